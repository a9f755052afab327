# Makes C++ of text files: cmake -DOUTPUT=... "-DFILES=name=path;..." -P embed_text.cmake
set(code "#include \"shipped_stylesheets.h\"\n\nnamespace quillon {\n\n")
foreach(pair IN LISTS FILES)
  string(REGEX MATCH "^([^=]*)=(.*)$" matched "${pair}")
  set(name "${CMAKE_MATCH_1}")
  file(READ "${CMAKE_MATCH_2}" bytes HEX)
  string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  string(APPEND code "namespace {\nconstexpr char k${name}Bytes[] = {\n${bytes}'\\0'};\n}  // namespace\n"
                     "const char* const kShipped${name} = k${name}Bytes;\n\n")
endforeach()
string(APPEND code "}  // namespace quillon\n")
file(WRITE "${OUTPUT}" "${code}")

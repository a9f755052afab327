# find_package(QuillonMedia) on Windows, for hosts in C++: the headers, and COM, which is the system's.
if(NOT TARGET QuillonMedia::QuillonMedia)
  add_library(QuillonMedia::QuillonMedia INTERFACE IMPORTED)
  set_target_properties(QuillonMedia::QuillonMedia PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${CMAKE_CURRENT_LIST_DIR}/../include"
    INTERFACE_COMPILE_DEFINITIONS "UNICODE;_UNICODE;NOMINMAX"
    INTERFACE_COMPILE_FEATURES cxx_std_20
    INTERFACE_LINK_LIBRARIES "ole32;oleaut32;uuid;shell32;advapi32")
endif()

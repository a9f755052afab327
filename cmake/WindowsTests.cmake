# The unit tests that also run as Windows programs. Debian has GoogleTest for other systems as source.
set(gtest /usr/src/googletest/googletest)
if(NOT EXISTS "${gtest}/src/gtest-all.cc")
  message(STATUS "No unit tests for Windows: the source of GoogleTest is not in ${gtest}")
  return()
endif()
# Windows stands for what the standard library of this compiler has not.
set(windows_support "${PROJECT_SOURCE_DIR}/tests/support/windows")
add_library(quillon_gtest STATIC "${gtest}/src/gtest-all.cc" "${gtest}/src/gtest_main.cc"
                                 "${windows_support}/notification.cpp")
target_include_directories(quillon_gtest SYSTEM
  PUBLIC "${windows_support}" "${gtest}/include" PRIVATE "${gtest}")
target_compile_definitions(quillon_gtest PRIVATE _WIN32_WINNT=0x0501)
add_library(GTest::gtest_main ALIAS quillon_gtest)

# What the tests share, without the parts that stand in for Linux services.
set(support "${PROJECT_SOURCE_DIR}/tests/support")
add_library(quillon_test_support STATIC "${support}/dicom_bytes.cpp" "${support}/object_maker.cpp"
                                        "${support}/temp_dir.cpp" "${support}/workstation_settings.cpp")
target_include_directories(quillon_test_support PUBLIC "${PROJECT_SOURCE_DIR}/tests")
target_link_libraries(quillon_test_support PRIVATE quillon_options)
# Recording services of the tests' own, found through ole32.
add_library(quillon_test_recorders STATIC
  "${support}/com_class.cpp" "${support}/disc_service.cpp" "${support}/disc_service_drives.cpp"
  "${support}/disc_service_image.cpp" "${support}/legacy_service.cpp"
  "${support}/legacy_service_desktop.cpp" "${support}/sleep_record.cpp"
  "${support}/system_sentence.cpp")
target_link_libraries(quillon_test_recorders PRIVATE quillon_options
                                             PUBLIC quillon_platform quillon_test_support)
# The numbered texts, which a program has as a resource.
add_library(quillon_test_messages OBJECT "${support}/messages.rc")
target_include_directories(quillon_test_messages PRIVATE "${PROJECT_SOURCE_DIR}/resources")
add_subdirectory(tests/charset)
add_subdirectory(tests/dicom)
add_subdirectory(tests/dicomobjects)
add_subdirectory(tests/disc)
add_subdirectory(tests/fileset)
add_subdirectory(tests/foundation)
add_subdirectory(tests/profiles)
add_subdirectory(tests/server)

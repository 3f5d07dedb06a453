# The device registry of this system, with made-up devices. Preloading umockdev puts it in front of
# the address sanitizer's runtime, which that takes for a mistake unless told otherwise.
if(NOT APPLE)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(UMOCKDEV REQUIRED IMPORTED_TARGET umockdev-1.0)
  add_executable(serial_udev_tests serial/udev/UdevRegistryTest.cpp)
  target_link_libraries(
    serial_udev_tests PRIVATE kxwan_static GTest::gtest_main GTest::gmock PkgConfig::UMOCKDEV
                              kxwan_settings)
  add_test(NAME serial.UdevRegistry COMMAND umockdev-wrapper $<TARGET_FILE:serial_udev_tests>)
  set_tests_properties(
    serial.UdevRegistry
    PROPERTIES TIMEOUT 120 ENVIRONMENT "${test_environment}" ENVIRONMENT_MODIFICATION
               "ASAN_OPTIONS=string_append:,verify_asan_link_order=0")
endif()

# CloseTest looks at what becomes of an open file, and makes calls fail.
if(NOT APPLE)
  target_link_options(serial_tests PRIVATE "LINKER:--wrap=close" "LINKER:--wrap=tcsetattr"
                      "LINKER:--wrap=waitpid")
endif()

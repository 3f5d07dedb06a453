# The program as a child, and those of its sources that are tested from within.
if(KXWAN_BUILD_TOOLS)
  find_package(nlohmann_json REQUIRED)
  target_sources(
    tool_tests PRIVATE ${PROJECT_SOURCE_DIR}/tool/kxwan/PortCheck.cpp
                       ${PROJECT_SOURCE_DIR}/tool/kxwan/PrivateText.cpp ${PROJECT_SOURCE_DIR}/tool/kxwan/Text.cpp)
  target_link_libraries(tool_tests PRIVATE nlohmann_json::nlohmann_json)
  target_compile_definitions(tool_tests PRIVATE KXWAN_PROGRAM="$<TARGET_FILE:kxwan>")
  add_dependencies(tool_tests kxwan)
endif()

if(TARGET kxwan-sim)
  target_compile_definitions(simulator_tests
                             PRIVATE KXWAN_SIM_PROGRAM="$<TARGET_FILE:kxwan-sim>")
  add_dependencies(simulator_tests kxwan-sim)
endif()

# Programs as Debian ships them talk to kxwan-sim.
if(KXWAN_BUILD_TOOLS)
  foreach(program gammu wvdialconf chat)
    add_test(NAME outside.${program}
             COMMAND ${CMAKE_CURRENT_LIST_DIR}/${program}.sh $<TARGET_FILE:kxwan-sim>)
    set_tests_properties(outside.${program} PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77 LABELS outside
                                                       ENVIRONMENT "${test_environment}")
  endforeach()
endif()

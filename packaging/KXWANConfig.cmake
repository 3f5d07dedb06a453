# The library's own needs are linked into it; a consumer needs nothing but the target.
include(${CMAKE_CURRENT_LIST_DIR}/KXWANTargets.cmake)

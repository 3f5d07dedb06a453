# kxwan_settings: the warnings and sanitizers that every target of this tree is built with.
add_library(kxwan_settings INTERFACE)
target_compile_options(kxwan_settings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # gcc 12 sees overlapping copies in its own std::string when it optimises.
  target_compile_options(kxwan_settings INTERFACE -Wno-restrict)
endif()
if(KXWAN_WERROR)
  target_compile_options(kxwan_settings INTERFACE -Werror)
endif()
if(KXWAN_SANITIZE)
  target_compile_options(
    kxwan_settings INTERFACE -fsanitize=${KXWAN_SANITIZE} -fno-sanitize-recover=all
                             -fno-omit-frame-pointer)
  target_link_options(kxwan_settings INTERFACE -fsanitize=${KXWAN_SANITIZE})
endif()

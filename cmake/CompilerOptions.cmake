# Options that every target of the project shares.

# Checks print the file they stand in: name it from the root of the project, the same on every machine.
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wimplicit-fallthrough -Wextra-semi)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 warns of overlaps inside std::string that cannot be (GCC bug 105329), and of uninitialised members of
  # std::variant alternatives that are not there.
  add_compile_options(-Wno-restrict -Wno-maybe-uninitialized)
endif()
if(QUELM_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()

if(QUELM_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(QUELM_FUZZING)
  # Everything is watched for where an input leads, the programs of Fuzzing/ bring libFuzzer itself.
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
                      -Wno-unknown-warning-option)
  add_link_options(-fsanitize=address,undefined)
endif()

# A fast linker and a compiler cache, where they are installed, keep a rebuild after one edit within seconds.
find_program(QUELM_MOLD mold)
if(QUELM_MOLD)
  add_link_options(-fuse-ld=mold)
endif()
find_program(QUELM_CCACHE ccache)
if(QUELM_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QUELM_CCACHE})
endif()

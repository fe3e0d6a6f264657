# The compiler settings of every target: link vesk_compile PRIVATE.

option(VESK_WERROR "Treat warnings as errors" ${PROJECT_IS_TOP_LEVEL})

add_library(vesk_compile INTERFACE)
target_compile_options(vesk_compile INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
  $<$<BOOL:${VESK_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 reports overlaps in "text" + std::string by mistake.
  target_compile_options(vesk_compile INTERFACE -Wno-restrict)
endif()
target_compile_definitions(vesk_compile INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
# With Clang the sanitizer runtime is in the program, and libraries resolve it at load time.
if(NOT VESK_SANITIZE OR CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_link_options(vesk_compile INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,-z,defs>)
endif()

if(VESK_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # With the sanitizers' checks GCC reports initialised variables, even in the standard library.
  target_compile_options(vesk_compile INTERFACE -Wno-maybe-uninitialized)
endif()

# Not in vesk_compile: all objects of a process need the same sanitizers.
if(VESK_SANITIZE)
  # The check of dynamic types needs a pipe to probe memory, and reports a fault in a process that has run out of descriptors,
  # as one of the tests does.
  add_compile_options(-fsanitize=${VESK_SANITIZE} -fno-sanitize=vptr -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VESK_SANITIZE})
endif()

# Compiler settings that every target of this project shares: link vesk_compile PRIVATE.

option(VESK_WERROR "Treat warnings as errors" ${PROJECT_IS_TOP_LEVEL})

add_library(vesk_compile INTERFACE)
target_compile_options(vesk_compile INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
  $<$<BOOL:${VESK_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlaps in "text" + std::string where there are none.
  target_compile_options(vesk_compile INTERFACE -Wno-restrict)
endif()
target_compile_definitions(vesk_compile INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
# With Clang the sanitizers are in the program alone, and a library finds them there when it is loaded.
if(NOT VESK_SANITIZE OR CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_link_options(vesk_compile INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,-z,defs>)
endif()

if(VESK_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC loses sight of what is initialised behind the sanitizers' checks, even in the standard library.
  target_compile_options(vesk_compile INTERFACE -Wno-maybe-uninitialized)
endif()

# Not in vesk_compile: every object in a process has to agree on these.
if(VESK_SANITIZE)
  # The check of dynamic types opens a pipe to look at memory, and takes a process that has used up its descriptors for a
  # faulty one; a test does use them up.
  add_compile_options(-fsanitize=${VESK_SANITIZE} -fno-sanitize=vptr -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VESK_SANITIZE})
endif()

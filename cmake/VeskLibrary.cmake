# The two targets that programs use, in this tree as in the installed one (see VeskInstall.cmake). ipc/CMakeLists.txt
# says what vesk_client is made of.

add_library(vesk::client ALIAS vesk_client)
# The platform's headers are no part of this: an application in C has no use for them.
target_include_directories(vesk_client
  INTERFACE $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
# Its objects bring these already, but only what is named here is recorded for the linkers of the installed library's users.
target_link_libraries(vesk_client PRIVATE vesk::binder vesk::utils vesk::log)
set_target_properties(vesk_client PROPERTIES EXPORT_NAME client)
if(VESK_PLATFORM STREQUAL "host")
  set_target_properties(vesk_client PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

add_library(vesk_service INTERFACE)
add_library(vesk::service ALIAS vesk_service)
target_link_libraries(vesk_service INTERFACE vesk_client vesk::binder vesk::utils vesk::log)
target_compile_features(vesk_service INTERFACE cxx_std_20)
set_target_properties(vesk_service PROPERTIES EXPORT_NAME service)

# Everything about the targets vesk_client and vesk_service except the list of their sources.

add_library(vesk::client ALIAS vesk_client)
target_include_directories(vesk_client
  PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
  PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
# The platform stays private: an application in C has no use for its headers.
target_link_libraries(vesk_client PRIVATE vesk_compile vesk::binder vesk::utils vesk::log)
set_target_properties(vesk_client PROPERTIES
  EXPORT_NAME client
  C_VISIBILITY_PRESET hidden
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
if(VESK_PLATFORM STREQUAL "standin")
  set_target_properties(vesk_client PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

add_library(vesk_service INTERFACE)
add_library(vesk::service ALIAS vesk_service)
target_link_libraries(vesk_service INTERFACE vesk_client vesk::binder vesk::utils vesk::log)
target_compile_features(vesk_service INTERFACE cxx_std_20)
set_target_properties(vesk_service PROPERTIES EXPORT_NAME service)

#include "Interfaces.h"

#include <com/qv/ICallService.h>
#include <com/qv/IConfigService.h>
#include <com/qv/IDatabaseService.h>
#include <com/qv/IExternalKeyService.h>
#include <com/qv/IMiscService.h>
#include <com/qv/IRelayService.h>

#include "Values.h"

namespace vesk::fuzz {

Input answers{Bytes()};
int calls = 0;

namespace {

/** The body of every method of the stubs. */
template <class... Parameters>
android::binder::Status serve(const Parameters&... parameters) {
  ++calls;
  [[maybe_unused]] const auto serveOne = []<class T>(const T& parameter) {
    if constexpr (std::is_pointer_v<T>) {
      *parameter = make<std::remove_pointer_t<T>>(&answers, nullptr);
    } else {
      touch(marshalled(parameter));
    }
  };
  (serveOne(parameters), ...);
  return makeStatus(&answers);
}

}  // namespace
}  // namespace vesk::fuzz

#define ROWS_HEADER "fuzz/Subject.h"
#include "tools/interfaces/ForEachInterface.h"

namespace vesk::fuzz {

std::span<const Interface> interfaces() {
  static const Interface all[] = {
      AteEventListener(),   CallEventListener(), CallService(), ConfigService(), DatabaseService(),
      ExternalKeyService(), MiscEventListener(), MiscService(), RelayService(),
  };
  return all;
}

}  // namespace vesk::fuzz

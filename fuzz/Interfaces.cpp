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
      look(parameter);
    }
  };
  (serveOne(parameters), ...);
  return makeStatus(&answers);
}

}  // namespace
}  // namespace vesk::fuzz

#define COM_QV_INTERFACE AteEventListener
#define COM_QV_METHODS <com/qv/AteEventListener.def>
#include "Subject.h"

#define COM_QV_INTERFACE CallEventListener
#define COM_QV_METHODS <com/qv/CallEventListener.def>
#include "Subject.h"

#define COM_QV_INTERFACE CallService
#define COM_QV_METHODS <com/qv/CallService.def>
#include "Subject.h"

#define COM_QV_INTERFACE ConfigService
#define COM_QV_METHODS <com/qv/ConfigService.def>
#include "Subject.h"

#define COM_QV_INTERFACE DatabaseService
#define COM_QV_METHODS <com/qv/DatabaseService.def>
#include "Subject.h"

#define COM_QV_INTERFACE ExternalKeyService
#define COM_QV_METHODS <com/qv/ExternalKeyService.def>
#include "Subject.h"

#define COM_QV_INTERFACE MiscEventListener
#define COM_QV_METHODS <com/qv/MiscEventListener.def>
#include "Subject.h"

#define COM_QV_INTERFACE MiscService
#define COM_QV_METHODS <com/qv/MiscService.def>
#include "Subject.h"

#define COM_QV_INTERFACE RelayService
#define COM_QV_METHODS <com/qv/RelayService.def>
#include "Subject.h"

namespace vesk::fuzz {

std::span<const Interface> interfaces() {
  static const Interface all[] = {
      AteEventListener(),   CallEventListener(), CallService(), ConfigService(), DatabaseService(),
      ExternalKeyService(), MiscEventListener(), MiscService(), RelayService(),
  };
  return all;
}

}  // namespace vesk::fuzz

#pragma once

#include <com/qv/IRelayService.h>

#include <memory>
#include <string>

#include "common/Service.h"
#include "relay/Relays.h"

namespace sim {

/** The relay service of the simulated device. On refusal, methods that return an integer return -1;
 * methods that return a record throw EX_ILLEGAL_ARGUMENT. */
class RelayService : public com::qv::BnRelayService {
 public:
  // The interface's table names these types without their namespace.
  using CommonParcelable = com::qv::CommonParcelable;
  using Status = android::binder::Status;

  RelayService(double speed, std::shared_ptr<Store> store) : relays_(speed, std::move(store)) {}

  RealTime<Relays>& relays() { return relays_; }

  /** As Relays::load(). */
  bool load(std::string* error);

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/RelayService.def>
#undef METHOD

 private:
  /** Calls `method` with the record. The result is 0 if `method` returns true, otherwise kRefused.
   * A record of another size is refused. */
  template <typename Record, typename Method>
  Status apply(const CommonParcelable& record, int32_t* result, Method method);

  RealTime<Relays> relays_;
};

}  // namespace sim

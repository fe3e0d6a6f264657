#pragma once

#include <com/qv/IRelayService.h>

#include <memory>
#include <string>

#include "clock/RealTime.h"
#include "relay/Relays.h"

namespace sim {

/** The relay service of the simulated device. What it refuses it answers with -1, or, where a record is asked
 * for, with EX_ILLEGAL_ARGUMENT. */
class RelayService : public com::qv::BnRelayService {
 public:
  // The rows name them so.
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
  /** Hands the record to the relays, unless it has another size. */
  template <typename Record>
  Status set(bool (Relays::*method)(const Record&), const CommonParcelable& record, int32_t* result);
  /** The same for what is changed within the bracket. */
  template <typename Record>
  Status change(bool (Relays::*method)(pid_t, const Record&), const CommonParcelable& record,
                int32_t* result);

  RealTime<Relays> relays_;
};

}  // namespace sim

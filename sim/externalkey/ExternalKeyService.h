#pragma once

#include <com/qv/IExternalKeyService.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "externalkey/KeyModuleRecords.h"
#include "store/RecordTable.h"

namespace sim {

/**
 * The external-key service of the simulated device: two modules with sixteen keys each, in the store. Modules
 * and keys count from 1. What it refuses it answers with EX_ILLEGAL_ARGUMENT, or -1 if a number is all there
 * is to give.
 */
class ExternalKeyService : public com::qv::BnExternalKeyService {
 public:
  // The rows name them so.
  using CommonParcelable = com::qv::CommonParcelable;
  using Status = android::binder::Status;

  explicit ExternalKeyService(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  /** To be called before anything else. False, with the reason in `error`, if the store fails. */
  bool prepare(std::string* error);

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/ExternalKeyService.def>
#undef METHOD

 private:
  /** Whether `work` accepts and the store keeps what it did. */
  bool perform(const std::function<bool(Transaction&)>& work);
  ModuleKeysRecord keysOf(Transaction& transaction, int32_t module) const;

  const std::shared_ptr<Store> store_;
  /** By module. */
  const ByteTable keys_{"module_keys"};
  /** By stateId(). */
  const ByteTable states_{"module_key_states"};
};

}  // namespace sim

#pragma once

#include <com/qv/IExternalKeyService.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "common/Service.h"
#include "externalkey/KeyModuleRecords.h"
#include "store/RecordTable.h"

namespace sim {

/**
 * The external-key service of the simulated device: two modules of sixteen keys, in the store.
 * Modules and keys count from 1. On refusal, addBtkConfig() returns -1; the other methods throw
 * EX_ILLEGAL_ARGUMENT.
 */
class ExternalKeyService : public com::qv::BnExternalKeyService {
 public:
  // The interface's table names these types without their namespace.
  using CommonParcelable = com::qv::CommonParcelable;
  using Status = android::binder::Status;

  explicit ExternalKeyService(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  /** To be called first. False, with the reason in `error`, if the store fails. */
  bool prepare(std::string* error);

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/ExternalKeyService.def>
#undef METHOD

 private:
  /** Runs `work` in a transaction; false if it returns false or the store fails. */
  bool perform(const std::function<bool(Transaction&)>& work);
  ModuleKeysRecord keysOf(Transaction& transaction, int32_t module) const;

  const std::shared_ptr<Store> store_;
  /** By module. */
  const RecordTable<ModuleKeysRecord> keys_{"module_keys"};
  /** By stateId(). */
  const RecordTable<KeyStateRecord> states_{"module_key_states"};
};

}  // namespace sim

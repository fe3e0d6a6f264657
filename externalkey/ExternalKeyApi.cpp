#include <com/qv/ExternalKeyClient.h>
#include <vesk/external_key.h>

#include <cstring>

#include "ipc/Immortal.h"
#include "ipc/Service.h"

#define COM_QV_INTERFACE ExternalKeyService
#define COM_QV_METHODS <com/qv/ExternalKeyService.def>
#include "ipc/DeclareRows.h"

using namespace com::qv;

namespace {

Service<ExternalKeyClient>& service = immortal<Service<ExternalKeyClient>>();
const ReleaseAtExit<ExternalKeyClient> kReleaseAtExit{service};

using BtkConfig = Record<VESK_BTK_CONFIG_SIZE>;
using SingleState = Record<VESK_SINGLE_STATE_CONFIG_SIZE>;

/** The rule for the answer to a single state: who asked to set it does not look at the answer. */
struct SingleStateAnswer {
  void* record;
  bool store(const CommonParcelable& answer) const {
    int32_t selector;
    std::memcpy(&selector, record, sizeof(selector));
    return selector != VESK_SINGLE_STATE_GET || answer.copyTo(record, VESK_SINGLE_STATE_CONFIG_SIZE);
  }
};

}  // namespace

/* Connecting */

bool connect_external_key_service(void) { return service.connect(); }

/* Key modules */

int binder_get_exkdev_mac(void* info) {
  return service.fetch<VESK_EXK_DEV_INFO_SIZE>(info, ExternalKeyService::getExkDevInfo);
}
int binder_get_exk_config(int value, void* config) {
  return service.fetch<VESK_EXK_CONFIG_SIZE>(config, ExternalKeyService::getExkeyConfig, value);
}
int binder_add_btk_config(const char* config) {
  return service.send(ExternalKeyService::addBtkConfig, BtkConfig{config});
}
int binder_set_or_get_singleState_config(void* record) {
  return service.fetch(SingleStateAnswer{record}, ExternalKeyService::set_or_get_singleState_config,
                       SingleState{record});
}
void binder_reset_exkdev_default_config(int a, int b) {
  service.send(ExternalKeyService::resetExkDevConfig, a, b);
}

#include <com/qv/ExternalKeyClient.h>
#include <vesk/external_key.h>

#include <cstring>

#include "ipc/ClientApi.h"

using namespace com::qv;

namespace {

ClientApi<ExternalKeyClient>& service = ClientApi<ExternalKeyClient>::instance();

/** The rule for the reply to a single state: ignored unless the state was read. */
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

bool connect_external_key_service(void) { return service.connectWithoutDeathNotification(); }

/* Key modules */

int binder_get_exkdev_mac(void* info) {
  return service.fetch<VESK_EXK_DEV_INFO_SIZE>(info, &IExternalKeyService::getExkDevInfo);
}
int binder_get_exk_config(int value, void* config) {
  return service.fetch<VESK_EXK_CONFIG_SIZE>(config, &IExternalKeyService::getExkeyConfig, value);
}
int binder_add_btk_config(const char* config) {
  return service.send(&IExternalKeyService::addBtkConfig, Record{config, VESK_BTK_CONFIG_SIZE});
}
int binder_set_or_get_singleState_config(void* record) {
  return service.fetch(SingleStateAnswer{record}, &IExternalKeyService::set_or_get_singleState_config,
                       Record{record, VESK_SINGLE_STATE_CONFIG_SIZE});
}
void binder_reset_exkdev_default_config(int a, int b) {
  service.send(&IExternalKeyService::resetExkDevConfig, a, b);
}

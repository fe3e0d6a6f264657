#include "config/ConfigService.h"

#include <vesk/config.h>

#include "ipc/Immortal.h"

using namespace com::qv;

Service<ConfigClient>& com::qv::configService = immortal<Service<ConfigClient>>();

namespace {

const ReleaseAtExit<ConfigClient> kReleaseAtExit{configService};

}  // namespace

bool connect_config_service(vesk_service_died_callback on_service_died) {
  const auto hook = [](ClientBase* client, const android::wp<android::IBinder>&) {
    configService.died(client);
  };
  return configService.connect(hook, on_service_died, [] {});
}

#include "config/ConfigService.h"

#include <vesk/config.h>

using namespace com::qv;

ClientApi<ConfigClient>& com::qv::configService = ClientApi<ConfigClient>::instance();

bool connect_config_service(vesk_service_died_callback on_service_died) {
  return configService.connect(on_service_died);
}

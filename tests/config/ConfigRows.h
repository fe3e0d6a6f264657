#pragma once

#include <vector>

#include "ApiTest.h"

/* What some functions of the config service give. */

/** Sent, whatever came of it. */
inline constexpr vesk::test::Expected kDone{.success = 0, .failed = 0, .absent = -1};
inline constexpr vesk::test::Expected kCut = text(vesk::test::Expected::kCut, 0, -1);
inline constexpr vesk::test::Expected kWhole = text(vesk::test::Expected::kWhole, 0, -1);
/** A result that tells nothing, not even of a missing connection. */
inline constexpr vesk::test::Expected kCutAlways = text(vesk::test::Expected::kCut, 0, 0);

/** Keys, DND, DSS keys, dial peers, time, screen, network, accounts, provisioning, the device's settings. */
std::vector<vesk::test::ApiRow> settingsRows();

/** Quality of service, passwords, call features, firmware, discovery, doors, NAT share. */
std::vector<vesk::test::ApiRow> featureRows();

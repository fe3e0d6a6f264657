#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/* The identity of the simulated device, and the other devices in its network. */

namespace sim::identity {

inline constexpr std::string_view kName = "vesk-device";
inline constexpr std::string_view kModel = "Simulated device";
inline constexpr std::string_view kHardware = "sim-1";
inline constexpr std::string_view kSoftware = VESK_VERSION;
inline constexpr std::string_view kBootloader = "none";
inline constexpr std::string_view kSerial = "SIM0000001";
inline constexpr std::string_view kMac = "02:00:00:00:00:01";
inline constexpr std::string_view kIp = "192.0.2.10";
inline constexpr std::string_view kNetmask = "255.255.255.0";
inline constexpr std::string_view kGateway = "192.0.2.1";
inline constexpr std::string_view kServer = "sip.example";
inline constexpr std::string_view kQcmsUrl = "https://qcms.example";

struct Neighbour {
  std::string_view ip;
  std::string_view mac;
  std::string_view name;
  std::string_view model;
  std::string_view username;
  std::string_view password;
};

inline constexpr std::array kNeighbours = {
    Neighbour{"192.0.2.21", "02:00:00:00:00:21", "Front Door", "Door station", "admin", "front"},
    Neighbour{"192.0.2.22", "02:00:00:00:00:22", "Back Door", "Door station", "admin", "back"},
    Neighbour{"192.0.2.31", "02:00:00:00:00:31", "Kitchen", "Indoor station", "user", "kitchen"},
};

}  // namespace sim::identity

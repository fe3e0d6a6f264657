#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/* The tables of include/com/qv as data: what there is to call, and with what. */
namespace veskctl {

/** What crosses; in the order of the alternatives of Value. */
enum class Type { kInt32, kBool, kString, kInt32s, kStrings, kRecord, kRecords, kListener };

/** As users write and read it: int32, string[], record ... */
const char* nameOf(Type type);

struct Parameter {
  const char* name;
  Type type;
  bool isOut;
  /** The interface class of a listener, "ICallEventListener"; empty for other types. */
  std::string_view listener;
};

struct Method {
  uint32_t code;
  const char* name;
  /** The in-parameters, then the out-parameters. */
  std::span<const Parameter> parameters;

  std::span<const Parameter> ins() const;
  std::span<const Parameter> outs() const;
  /** makeCall(int32 line, string number) -> int32 result */
  std::string signature() const;
};

struct Interface {
  /** What the user calls it: "call" for the service, "call-events" for its listener. */
  const char* name;
  /** The class without its I: "CallService". */
  const char* className;
  std::span<const Method> methods;

  bool isListener() const;
  /** What it is registered as: "com.qv.CallService". Nobody registers listeners on a device. */
  std::string serviceName() const;
  /** "com.qv.ICallService" */
  std::string descriptor() const;
  /** What users watch, of a listener: "call". */
  std::string topic() const;

  const Method* find(uint32_t code) const;
};

/** The six services, then the three listeners. */
std::span<const Interface> interfaces();
std::span<const Interface> services();
std::span<const Interface> listeners();

/** By its name, the name of its service, its descriptor or its class, in capitals or not. On failure null,
 * and `error` suggests. */
const Interface* findInterface(std::span<const Interface> among, std::string_view name, std::string* error);

/** By its name, in capitals or not, or its code. On failure null, and `error` suggests. */
const Method* findMethod(const Interface& interface, std::string_view nameOrCode, std::string* error);

/** The method of a service with which a listener of that interface is registered. */
struct Registration {
  const Interface* service;
  const Method* method;
};
std::optional<Registration> registrationOf(const Interface& listener);

}  // namespace veskctl

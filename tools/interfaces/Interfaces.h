#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/* The interfaces of include/com/qv as data: their methods and parameters. */
namespace vesk::interfaces {

enum class Type { kInt32, kBool, kString, kInt32s, kStrings, kRecord, kRecords, kListener };

/** The name of a type in input and output: int32, string[], record ... */
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
  /**
   * The types of the values in a reply, in their order. The last out-parameter, which is the return
   * value, comes first.
   */
  std::vector<Type> replyTypes() const;
  /* True for a single record and for a list of records. */
  bool takesRecord() const;
  bool returnsRecord() const;
  /** For example "makeCall(int32 line, string number) -> int32 result". */
  std::string signature() const;
};

struct Interface {
  /** The short name: "call" for the service, "call-events" for its listener. */
  const char* name;
  /** The name of the class without the leading I: "CallService". */
  const char* className;
  /** In code order, from 1, without a gap. */
  std::span<const Method> methods;

  bool isListener() const;
  /** The name in the service manager: "com.qv.CallService". Listeners are not registered there. */
  std::string serviceName() const;
  /** "com.qv.ICallService" */
  std::string descriptor() const;
  /** For a listener, the short name up to the hyphen: "call". */
  std::string topic() const;

  /** Null if there is no such method. */
  const Method* find(uint32_t code) const;
  const Method* find(std::string_view methodName) const;
};

/** The six services, then the three listeners. */
std::span<const Interface> all();
std::span<const Interface> services();
std::span<const Interface> listeners();

/** Finds a service by its short name or its name in the service manager; null if there is none. */
const Interface* findService(std::string_view name);

/** The method of a service that registers listeners of an interface. */
struct Registration {
  const Interface* service;
  const Method* method;
};
std::optional<Registration> registrationOf(const Interface& listener);

}  // namespace vesk::interfaces

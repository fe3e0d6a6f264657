#include "Interfaces.h"

#include <algorithm>

namespace vesk::interfaces {

namespace {

constexpr std::string_view kPackage = "com.qv.";

std::string join(std::span<const Parameter> parameters) {
  std::string text;
  for (const Parameter& parameter : parameters) {
    if (!text.empty()) text += ", ";
    text += nameOf(parameter.type) + std::string(" ") + parameter.name;
  }
  return text;
}

bool hasRecord(std::span<const Parameter> parameters) {
  return std::ranges::any_of(parameters, [](const Parameter& each) {
    return each.type == Type::kRecord || each.type == Type::kRecords;
  });
}

}  // namespace

const char* nameOf(Type type) {
  constexpr const char* kNames[] = {"int32",    "bool",   "string",   "int32[]",
                                    "string[]", "record", "record[]", "listener"};
  return kNames[static_cast<size_t>(type)];
}

std::span<const Parameter> Method::ins() const {
  const auto firstOut = std::ranges::find(parameters, true, &Parameter::isOut);
  return {parameters.begin(), firstOut};
}

std::span<const Parameter> Method::outs() const { return parameters.subspan(ins().size()); }

std::vector<Type> Method::replyTypes() const {
  std::vector<Type> types;
  for (const Parameter& out : outs()) types.push_back(out.type);
  if (!types.empty()) std::rotate(types.begin(), types.end() - 1, types.end());
  return types;
}

bool Method::takesRecord() const { return hasRecord(ins()); }
bool Method::returnsRecord() const { return hasRecord(outs()); }

std::string Method::signature() const {
  std::string text = std::string(name) + "(" + join(ins()) + ")";
  if (outs().size() == 1) text += " -> " + join(outs());
  if (outs().size() > 1) text += " -> (" + join(outs()) + ")";
  return text;
}

bool Interface::isListener() const { return std::string_view(className).ends_with("Listener"); }
std::string Interface::serviceName() const { return std::string(kPackage) + className; }
std::string Interface::descriptor() const { return std::string(kPackage) + "I" + className; }

std::string Interface::topic() const {
  const std::string_view whole = name;
  return std::string(whole.substr(0, whole.find('-')));
}

const Method* Interface::find(uint32_t code) const {
  return code >= 1 && code <= methods.size() ? &methods[code - 1] : nullptr;
}

const Method* Interface::find(std::string_view methodName) const {
  const auto found =
      std::ranges::find_if(methods, [&](const Method& each) { return methodName == each.name; });
  return found == methods.end() ? nullptr : &*found;
}

const Interface* findService(std::string_view name) {
  const auto found = std::ranges::find_if(
      services(), [&](const Interface& each) { return name == each.name || name == each.serviceName(); });
  return found == services().end() ? nullptr : &*found;
}

std::optional<Registration> registrationOf(const Interface& listener) {
  const std::string wanted = "I" + std::string(listener.className);
  for (const Interface& service : services()) {
    for (const Method& method : service.methods) {
      for (const Parameter& parameter : method.parameters) {
        if (parameter.listener == wanted) return Registration{&service, &method};
      }
    }
  }
  return std::nullopt;
}

}  // namespace vesk::interfaces

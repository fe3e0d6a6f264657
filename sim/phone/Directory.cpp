#include "phone/Directory.h"

#include <algorithm>

namespace sim {

const Contact* findContact(std::span<const Contact> directory, std::string_view number) {
  const auto found = std::ranges::find(directory, number, &Contact::number);
  return found == directory.end() ? nullptr : &*found;
}

}  // namespace sim

#include "ipc/Arguments.h"

namespace com::qv {

namespace {

/** The parameters that had to be made. */
class Converted {
 public:
  Converted() = default;
  ~Converted() {
    while (count_ > 0) {
      --count_;
      destroy_[count_](storage_ + count_);
    }
  }
  Converted(const Converted&) = delete;
  Converted& operator=(const Converted&) = delete;

  void* add(const Type& type, Conversion conversion, const void* argument) {
    Storage* const parameter = storage_ + count_;
    conversion(parameter, argument);
    destroy_[count_++] = type.destroy;
    return parameter;
  }

 private:
  size_t count_ = 0;
  void (*destroy_[kMaxParameters])(void*);
  Storage storage_[kMaxParameters];
};

}  // namespace

void callConverting(android::IInterface* service, AnyMethod method, const Signature& signature,
                    const Conversion* conversions, void** values) {
  Converted converted;
  for (size_t i = 0; i < signature.ins; ++i) {
    if (conversions[i] != nullptr) values[i] = converted.add(*signature.types[i], conversions[i], values[i]);
  }
  signature.invoke(service, method, values);
}

}  // namespace com::qv

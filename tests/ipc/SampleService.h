#pragma once

#include <atomic>
#include <functional>
#include <numeric>

#include "ISample.h"

namespace com::qv {

/** Serves ISample as the names of its methods promise, or returns `outcome`. */
class SampleService : public BnSample {
 public:
  android::binder::Status nothing() override { return done(); }

  android::binder::Status numbers(int32_t number, bool flag, int32_t* twice) override {
    *twice = flag ? 2 * number : 0;
    return done();
  }

  android::binder::Status truth(int32_t number, bool* positive) override {
    *positive = number > 0;
    return done();
  }

  android::binder::Status text(const std::string& text, std::string* echo) override {
    *echo = text;
    return done();
  }

  android::binder::Status ints(const std::vector<int32_t>& values, int32_t* sum) override {
    *sum = std::accumulate(values.begin(), values.end(), 0);
    return done();
  }

  android::binder::Status record(int32_t, const CommonParcelable& record, CommonParcelable* echo) override {
    *echo = record;
    return done();
  }

  /** `count` records, of 0, 1, 2... bytes. */
  android::binder::Status records(int32_t count, std::vector<CommonParcelable>* records) override {
    for (int32_t size = 0; size < count; ++size) {
      records->push_back(CommonParcelable("0123456789", static_cast<size_t>(size)));
    }
    return done();
  }

  android::binder::Status texts(std::vector<android::String16>* texts) override {
    *texts = {android::String16("one"), android::String16()};
    return done();
  }

  android::binder::Status listen(const android::sp<ISampleListener>& newListener) override {
    listener = newListener;
    return done();
  }

  android::binder::Status everything(int32_t number, CommonParcelable* record,
                                     std::vector<CommonParcelable>* records, int32_t* result) override {
    *result = number;
    *record = CommonParcelable("r", 1);
    *records = {CommonParcelable("a", 1), CommonParcelable("b", 1)};
    return done();
  }

  /** The status that every method returns. */
  android::binder::Status outcome;
  std::atomic<int> calls = 0;
  /** Runs inside every method. */
  std::function<void()> during;
  android::sp<ISampleListener> listener;

 private:
  android::binder::Status done() {
    ++calls;
    if (during) during();
    return outcome;
  }
};

}  // namespace com::qv

#include <com/qv/CallEventListener.h>

#include <cstdio>

#include <android/log.h>
#include <com/qv/CallClient.h>

#include "call/CallCallbacks.h"

namespace com::qv {

using android::binder::Status;

namespace {

constexpr const char* kTag = CallClient::kLogTag;

/** Includes the terminating zero. */
constexpr size_t kMakeCallRetSize = 128;

template <class... Parameters>
using Callback = void (*CallCallbacks::*)(Parameters...);

/** Calls the application's callback, unless it is null. */
template <class... Parameters, class... Arguments>
Status notify(Callback<Parameters...> callback, Arguments... arguments) {
  if (const auto function = callCallbacks.get(callback); function != nullptr) function(arguments...);
  return Status::ok();
}

/** Logs the event's name and calls the callback. */
template <class... Parameters, class... Arguments>
Status logAndNotify(const char* name, Callback<Parameters...> callback, Arguments... arguments) {
  __android_log_print(ANDROID_LOG_INFO, kTag, "%s", name);
  return notify(callback, arguments...);
}

/** The log line for a record of the wrong size; no line for a null text. */
struct SizeError {
  android_LogPriority priority;
  const char* text;
};

/** Checks the record's size, logs the record if `log` is given, and calls the callback. */
template <class Record, class... Rest>
Status recordEvent(const char* name, const CommonParcelable& parcel, void (*log)(const char*, const Record&),
                   SizeError error, Callback<void*, Rest...> callback, Rest... rest) {
  // The additional zero terminates the last text of the record if the service did not.
  struct {
    Record record;
    char end;
  } received{};
  if (!parcel.copyTo(&received.record, sizeof(Record))) {
    if (error.text != nullptr) __android_log_print(error.priority, kTag, "%s", error.text);
    return Status::ok();
  }
  if (log != nullptr) log(name, received.record);
  return notify(callback, &received.record, rest...);
}

/* %.*s, since the service may leave a text unterminated. */

void logCall(const char* event, const vesk_call_info& info) {
  __android_log_print(ANDROID_LOG_INFO, kTag, "%s(line:%d, chan:%d, name:%.*s, number:%.*s)", event,
                      info.line, info.chan, int{sizeof(info.name)}, info.name, int{sizeof(info.number)},
                      info.number);
}

void logAutoRedial(const char* event, const vesk_auto_redial_info& info) {
  __android_log_print(ANDROID_LOG_DEBUG, kTag,
                      "%s(maxtimes:%d, interval:%d, dialNumber:%.*s, currenttimes:%d)", event, info.maxtimes,
                      info.interval, int{sizeof(info.dialNumber)}, info.dialNumber, info.currenttimes);
}

void logCallCompletion(const char* event, const vesk_call_completion_info& info) {
  __android_log_print(ANDROID_LOG_DEBUG, kTag, "%s(line:%d, dialNumber:%.*s)", event, info.line,
                      int{sizeof(info.dialNumber)}, info.dialNumber);
}

constexpr void (*kNoCallInfoLog)(const char*, const vesk_call_info&) = nullptr;

}  // namespace

/* Two of the error texts name other events. They stay as they are, since people search logs for
 * them. */

Status CallEventListener::dialCallStartEvent(const CommonParcelable& callInfo) {
  __android_log_print(ANDROID_LOG_INFO, kTag, "%s", __func__);
  return recordEvent(__func__, callInfo, kNoCallInfoLog,
                     {ANDROID_LOG_ERROR, "peddial started param error!!!"}, &CallCallbacks::dialCallStart);
}

Status CallEventListener::dialCallStopEvent(int32_t value) {
  return logAndNotify(__func__, &CallCallbacks::dialCallStop, value);
}

Status CallEventListener::dialSelectionEvent(int32_t value) {
  return notify(&CallCallbacks::dialSelection, value);
}

Status CallEventListener::newOngoingCallEvent(const CommonParcelable& callInfo) {
  return recordEvent(__func__, callInfo, logCall, {ANDROID_LOG_ERROR, "newOngoingCallEvent param error!!!"},
                     &CallCallbacks::newOngoingCall);
}

Status CallEventListener::callStateChangedEvent(const CommonParcelable& callInfo) {
  return recordEvent(__func__, callInfo, kNoCallInfoLog, {}, &CallCallbacks::callStateChanged);
}

Status CallEventListener::callInfoChangedEvent(const CommonParcelable& callInfo) {
  return recordEvent(__func__, callInfo, logCall, {ANDROID_LOG_ERROR, "newOutgoingCallEvent param error!!!"},
                     &CallCallbacks::callInfoChanged);
}

Status CallEventListener::deleteOngoingCallEvent(int32_t chan) {
  __android_log_print(ANDROID_LOG_INFO, kTag, "%s, chan: [%d]", __func__, chan);
  return notify(&CallCallbacks::deleteOngoingCall, chan);
}

Status CallEventListener::currentCallChangedEvent(int32_t chan) {
  __android_log_print(ANDROID_LOG_INFO, kTag, "%s, chan: [%d]", __func__, chan);
  return notify(&CallCallbacks::currentCallChanged, chan);
}

Status CallEventListener::updateCallVideoStreamEvent(int32_t num) {
  __android_log_print(ANDROID_LOG_INFO, kTag, "%s, num: [%d]", __func__, num);
  return notify(&CallCallbacks::updateCallVideoStream, num);
}

Status CallEventListener::conferenceStartEvent(int32_t value, const std::vector<int32_t>& members) {
  return logAndNotify(__func__, &CallCallbacks::conferenceStart, value, members.data(),
                      static_cast<int>(members.size()));
}

Status CallEventListener::conferenceStopEvent(int32_t value) {
  return logAndNotify(__func__, &CallCallbacks::conferenceStop, value);
}

Status CallEventListener::conferenceMembersChangedEvent(int32_t value, const std::vector<int32_t>& members) {
  return logAndNotify(__func__, &CallCallbacks::conferenceMembersChanged, value, members.data(),
                      static_cast<int>(members.size()));
}

Status CallEventListener::conferenceManagerEvent() {
  return logAndNotify(__func__, &CallCallbacks::conferenceManager);
}

Status CallEventListener::makeCallRetEvent(const std::string& text) {
  char buffer[kMakeCallRetSize] = {};
  std::snprintf(buffer, sizeof(buffer), "%s", text.c_str());
  return logAndNotify(__func__, &CallCallbacks::makeCallRet, static_cast<const char*>(buffer));
}

Status CallEventListener::keycodeEvent(int32_t code, int32_t status) {
  __android_log_print(ANDROID_LOG_INFO, kTag, "%s(code:%d, status:%d)", __func__, code, status);
  return notify(&CallCallbacks::keycode, code, status);
}

Status CallEventListener::dialingInfoChangedEvent(const CommonParcelable& callInfo) {
  return recordEvent(__func__, callInfo, logCall,
                     {ANDROID_LOG_ERROR, "dialingInfoChangedEvent param error!!!"},
                     &CallCallbacks::dialingInfoChanged);
}

Status CallEventListener::autoRedialInfoChangedEvent(const CommonParcelable& autoRedialInfo) {
  return recordEvent(__func__, autoRedialInfo, logAutoRedial,
                     {ANDROID_LOG_DEBUG, "autoRedialInfoChangedEvent param error!!!"},
                     &CallCallbacks::autoRedialInfoChanged);
}

Status CallEventListener::callCompletionInfoChangedEvent(const CommonParcelable& completionInfo, bool flag) {
  return recordEvent(__func__, completionInfo, logCallCompletion,
                     {ANDROID_LOG_DEBUG, "callCompletionInfoChangedEvent param error!!!"},
                     &CallCallbacks::callCompletionInfoChanged, flag);
}

}  // namespace com::qv

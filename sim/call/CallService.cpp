#include "call/CallService.h"

#include <binder/IPCThreadState.h>

#include "call/CallRecords.h"

namespace sim {

using android::binder::Status;

namespace {

constexpr size_t kVideoAreaSize = 16;

Status refuse(int32_t exception, const char* why) { return Status::fromExceptionCode(exception, why); }

}  // namespace

CallService::CallService(double speed, const Phone::Sink& trace)
    : phone_(speed, [this, trace](Time time, const Event& event) {
        trace(time, event);
        dispatcher_.publish(event);
      }) {}

template <typename... Params, typename... Args>
Status CallService::tell(Phone::Refusal (Phone::*method)(Params...), const Args&... args) {
  const Phone::Refusal refusal = phone_.use([&](Phone& phone) { return (phone.*method)(args...); });
  return refusal ? refuse(Status::EX_ILLEGAL_STATE, refusal->c_str()) : Status::ok();
}

template <typename Result, typename Method, typename... Args>
Status CallService::ask(Result* result, Method method, const Args&... args) {
  *result = phone_.use([&](Phone& phone) { return (phone.*method)(args...); });
  return Status::ok();
}

Status CallService::redialCall() { return tell(&Phone::redialCall); }
Status CallService::setCallHoldStatus(int32_t chan, bool hold) {
  return tell(&Phone::setCallHoldStatus, chan, hold);
}
Status CallService::closeCall(int32_t chan) { return tell(&Phone::closeCall, chan); }
Status CallService::headsetAnswerCall() { return tell(&Phone::headsetAnswerCall); }

Status CallService::conferenceAddMembers(const std::vector<int32_t>& chans) {
  return tell(&Phone::conferenceAddMembers, chans);
}
Status CallService::conferenceRemoveMember(int32_t chan) {
  return tell(&Phone::conferenceRemoveMember, chan);
}
Status CallService::conferenceHoldMember(int32_t chan) { return tell(&Phone::conferenceHoldMember, chan); }
Status CallService::conferenceResumeMember(int32_t chan) {
  return tell(&Phone::conferenceResumeMember, chan);
}
Status CallService::conferenceMuteMember(int32_t chan, bool mute) {
  return tell(&Phone::conferenceMuteMember, chan, mute);
}
Status CallService::conferenceMuteAllMember(int32_t conference, bool mute) {
  return tell(&Phone::conferenceMuteAllMember, conference, mute);
}

Status CallService::setVideoDisplayArea(int32_t chan, const CommonParcelable& areaA,
                                        const CommonParcelable& areaB) {
  if (areaA.blob().length() != kVideoAreaSize || areaB.blob().length() != kVideoAreaSize) {
    return refuse(Status::EX_ILLEGAL_ARGUMENT, "A video area is a record of 16 bytes");
  }
  return tell(&Phone::setVideoDisplayArea, chan);
}
Status CallService::setVideoMultiStreamArea(int32_t, int32_t) {
  return tell(&Phone::setVideoMultiStreamArea);
}

Status CallService::dialSelectionRequest(int32_t value) { return tell(&Phone::dialSelectionRequest, value); }
Status CallService::makeCall(int32_t line, const std::string& number, int32_t* result) {
  return ask(result, &Phone::makeCall, line, number);
}
Status CallService::makeAvCall(int32_t line, const std::string& number, bool video, int32_t* result) {
  return ask(result, &Phone::makeAvCall, line, number, video);
}
Status CallService::playMwi(int32_t line, const std::string& number, int32_t* result) {
  return ask(result, &Phone::playMwi, line, number);
}
Status CallService::edialWithLine(int32_t line, const std::string& number, int32_t* result) {
  return ask(result, &Phone::edialWithLine, line, number);
}
Status CallService::edialChangeLine(int32_t line, int32_t* result) {
  return ask(result, &Phone::edialChangeLine, line);
}
Status CallService::edialMakeCall(int32_t* result) { return ask(result, &Phone::edialMakeCall); }
Status CallService::getFirstValidLine(int32_t* line) { return ask(line, &Phone::getFirstValidLine); }

Status CallService::playToneRequest(int32_t tone) { return tell(&Phone::playToneRequest, tone); }
Status CallService::stopToneRequest() { return tell(&Phone::stopToneRequest); }
Status CallService::dialNumberUpdateRequest(const std::string& number) {
  return tell(&Phone::dialNumberUpdateRequest, number);
}
Status CallService::setCurrentCall(int32_t chan) { return tell(&Phone::setCurrentCall, chan); }
Status CallService::switchCallMutedState() { return tell(&Phone::switchCallMutedState); }
Status CallService::keyMultiPlexing(bool on) { return tell(&Phone::keyMultiPlexing, on); }
Status CallService::createNewCall(int32_t line) { return tell(&Phone::createNewCall, line); }

Status CallService::callCompletion() { return tell(&Phone::callCompletion); }
Status CallService::callAutoRedial() { return tell(&Phone::callAutoRedial); }
Status CallService::autoRedialsoftbtnMakeCall() { return tell(&Phone::autoRedialsoftbtnMakeCall); }
Status CallService::autoRedialsoftbtnCancel() { return tell(&Phone::autoRedialsoftbtnCancel); }
Status CallService::callCompleteDialConfirm(int32_t line, const std::string& number) {
  return tell(&Phone::callCompleteDialConfirm, line, number);
}
Status CallService::callCompleteCancel(int32_t line, const std::string& number) {
  return tell(&Phone::callCompleteCancel, line, number);
}

Status CallService::registerCallEventListener(const android::sp<ICallEventListener>& listener) {
  if (listener == nullptr) return refuse(Status::EX_NULL_POINTER, "There is no listener");
  dispatcher_.subscribe(android::IPCThreadState::self()->getCallingPid(), listener);
  return Status::ok();
}

Status CallService::videoSnapshot(int32_t chan) { return tell(&Phone::videoSnapshot, chan); }
Status CallService::deleteSnapshot(int32_t chan) { return tell(&Phone::deleteSnapshot, chan); }
Status CallService::getSnapshotNums(int32_t chan, int32_t* count) {
  return ask(count, &Phone::getSnapshotNums, chan);
}
Status CallService::requestSnapShotData(int32_t chan, int32_t* result) {
  return ask(result, &Phone::requestSnapShotData, chan);
}
Status CallService::getSnapshotInfoByIndex(int32_t chan, int32_t index, CommonParcelable* info) {
  std::optional<Snapshot> snapshot;
  ask(&snapshot, &Phone::getSnapshotInfoByIndex, chan, index);
  if (!snapshot) return refuse(Status::EX_ILLEGAL_ARGUMENT, "There is no such snapshot");
  *info = toRecord(*snapshot);
  return Status::ok();
}

Status CallService::ctrlLedDooropen() { return tell(&Phone::ctrlLedDooropen); }
Status CallService::setDtmfType(int32_t type) { return tell(&Phone::setDtmfType, type); }
Status CallService::getCallHaveIvr(bool* haveIvr) { return ask(haveIvr, &Phone::getCallHaveIvr); }

}  // namespace sim

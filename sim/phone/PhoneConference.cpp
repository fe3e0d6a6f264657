#include <algorithm>
#include <utility>

#include "phone/Phone.h"

namespace sim {

namespace {

constexpr const char* kNotAMember = "The call is not in the conference";
constexpr const char* kHeldAlready = "The member is on hold already";
constexpr const char* kNotHeld = "The member is not on hold";

bool contains(const std::vector<int32_t>& chans, int32_t chan) {
  return std::ranges::find(chans, chan) != chans.end();
}

}  // namespace

Phone::Call* Phone::findMember(int32_t chan) {
  Call* call = find(chan);
  return call != nullptr && contains(members_, call->info.chan) ? call : nullptr;
}

Refusal Phone::conferenceAddMembers(const std::vector<int32_t>& chans) {
  std::vector<int32_t> joining;
  const auto join = [&](int32_t chan) {
    if (!contains(members_, chan) && !contains(joining, chan)) joining.push_back(chan);
  };
  for (const int32_t chan : chans) {
    const Call* call = find(chan);
    if (call == nullptr || !call->answered)
      return "Channel " + std::to_string(chan) + " has no call that can join";
    join(call->info.chan);
  }
  // The call in progress joins, too.
  if (const Call* talking = findTalking()) join(talking->info.chan);
  if (joining.empty()) return "There is no call that can join";
  if (members_.size() + joining.size() < 2) return "A conference needs two members";

  const bool starts = members_.empty();
  members_.insert(members_.end(), joining.begin(), joining.end());
  emit(starts ? EventType::conferenceStartEvent : EventType::conferenceMembersChangedEvent,
       ConferenceInfo{kConferenceNumber, members_});
  for (const int32_t chan : members_) {
    Call& call = calls_.at(chan);
    if (call.info.state != CallState::kConference) setState(call, CallState::kConference);
  }
  return {};
}

void Phone::leaveConference(int32_t chan) {
  if (std::erase(members_, chan) == 0) return;
  if (members_.size() >= 2) {
    emit(EventType::conferenceMembersChangedEvent, ConferenceInfo{kConferenceNumber, members_});
    return;
  }
  Call& last = calls_.at(members_.front());
  members_.clear();
  emit(EventType::conferenceStopEvent, kConferenceNumber);
  setState(last, last.info.state == CallState::kConference ? CallState::kTalking : CallState::kHeld);
}

Refusal Phone::conferenceRemoveMember(int32_t chan) {
  Call* call = findMember(chan);
  if (call == nullptr) return kNotAMember;
  setState(*call, CallState::kHeld);
  leaveConference(call->info.chan);
  return {};
}

Refusal Phone::conferenceHoldMember(int32_t chan) {
  Call* call = findMember(chan);
  if (call == nullptr) return kNotAMember;
  if (call->info.state == CallState::kConferenceHeld) return kHeldAlready;
  setState(*call, CallState::kConferenceHeld);
  emit(EventType::conferenceManagerEvent);
  return {};
}

Refusal Phone::conferenceResumeMember(int32_t chan) {
  Call* call = findMember(chan);
  if (call == nullptr) return kNotAMember;
  if (call->info.state == CallState::kConference) return kNotHeld;
  if (Call* talking = findTalking()) setState(*talking, CallState::kHeld);
  setState(*call, CallState::kConference);
  emit(EventType::conferenceManagerEvent);
  return {};
}

Refusal Phone::conferenceMuteMember(int32_t chan, bool mute) {
  Call* call = findMember(chan);
  if (call == nullptr) return kNotAMember;
  call->info.muted = mute;
  emit(EventType::callInfoChangedEvent, call->info);
  emit(EventType::conferenceManagerEvent);
  return {};
}

Refusal Phone::conferenceMuteAllMember(int32_t conference, bool mute) {
  if (members_.empty() || (conference != 0 && conference != kConferenceNumber)) {
    return "There is no such conference";
  }
  for (const int32_t chan : members_) {
    Call& call = calls_.at(chan);
    if (std::exchange(call.info.muted, mute) != mute) emit(EventType::callInfoChangedEvent, call.info);
  }
  emit(EventType::conferenceManagerEvent);
  return {};
}

}  // namespace sim

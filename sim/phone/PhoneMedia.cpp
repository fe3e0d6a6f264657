#include "phone/Phone.h"

namespace sim {

Refusal Phone::playToneRequest(int32_t tone) {
  tone_ = tone;
  return {};
}

Refusal Phone::stopToneRequest() {
  setTone(Tone::kNone);
  return {};
}

Refusal Phone::keyMultiPlexing(bool on) {
  keysMultiplexed_ = on;
  return {};
}

Refusal Phone::setDtmfType(int32_t type) {
  dtmfType_ = type;
  return {};
}

Refusal Phone::ctrlLedDooropen() {
  timers_.cancel(doorLedTimer_);
  doorLedTimer_ = timers_.after(kDoorLedTime, [this] { doorLedTimer_ = 0; });
  return {};
}

Refusal Phone::setVideoDisplayArea(int32_t chan) {
  const Call* call = find(chan);
  if (call == nullptr || !call->info.video || !call->answered) return "There is no video to show";
  emit(EventType::updateCallVideoStreamEvent, videoStreams());
  return {};
}

Refusal Phone::setVideoMultiStreamArea(int32_t, int32_t) {
  if (videoStreams() == 0) return "There is no video to show";
  emit(EventType::updateCallVideoStreamEvent, videoStreams());
  return {};
}

Refusal Phone::videoSnapshot(int32_t chan) {
  const Call* call = find(chan);
  if (call == nullptr || !call->info.video || !call->answered)
    return "There is no video to take a picture of";
  std::vector<Snapshot>& taken = snapshots_[call->info.chan];
  const auto index = static_cast<int32_t>(taken.size());
  taken.push_back({call->info.chan, index, now(), call->info.name, call->info.number});
  return {};
}

Refusal Phone::deleteSnapshot(int32_t chan) {
  if (snapshots_.erase(chan == 0 ? current_ : chan) == 0) return "There are no snapshots";
  return {};
}

int32_t Phone::getSnapshotNums(int32_t chan) const {
  const auto taken = snapshots_.find(chan == 0 ? current_ : chan);
  return taken == snapshots_.end() ? 0 : static_cast<int32_t>(taken->second.size());
}

int32_t Phone::requestSnapShotData(int32_t chan) const { return getSnapshotNums(chan) > 0 ? 0 : kRefused; }

std::optional<Snapshot> Phone::snapshot(int32_t chan, int32_t index) const {
  const auto taken = snapshots_.find(chan == 0 ? current_ : chan);
  if (taken == snapshots_.end() || index < 0 || index >= static_cast<int32_t>(taken->second.size())) {
    return std::nullopt;
  }
  return taken->second[static_cast<size_t>(index)];
}

}  // namespace sim

#pragma once

namespace vantrel {

/// When floating controls are seen: always while nothing plays; while it plays, from each movement
/// until all has rested for a while.
class ControlsVisibility final {
 public:
  /// For how long nothing may move before they go.
  static constexpr int kRestMilliseconds = 2500;

  [[nodiscard]] bool areShown() const { return !m_isPlaying || !m_hasRested; }
  /// Whether they go when all rests.
  [[nodiscard]] bool awaitRest() const { return m_isPlaying && !m_hasRested; }

  /// A pause or a start counts as a movement.
  void setPlaying(bool playing) {
    if (playing == m_isPlaying) return;
    m_isPlaying = playing;
    m_hasRested = false;
  }
  /// The pointer or a key has moved.
  void stir() { m_hasRested = false; }
  /// Nothing has moved for kRestMilliseconds; controls that are in use stay.
  void rest(bool areInUse) { m_hasRested = !areInUse; }

 private:
  bool m_isPlaying = false;
  bool m_hasRested = false;
};

}  // namespace vantrel

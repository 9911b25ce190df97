#pragma once

#include <cstdint>

/// Whether the device controller looks for people at present, as far as the terminal has told it.
/// Follows the frames that are sent, whoever sends them. GUI thread only.
class RecognitionRun {
 public:
    /// To be called with every frame that has left.
    void sent(std::uint16_t command, std::uint8_t p1);
    /// To be called when the link is lost: who answers next may be a controller just started.
    void forget() { *this = {}; }

    /// Whether it recognises people and the camera shows them.
    bool runs() const { return recognises_ && cameraRuns_ && pictureRuns_; }

 private:
    bool recognises_ = false;
    bool cameraRuns_ = false;
    bool pictureRuns_ = false;
};

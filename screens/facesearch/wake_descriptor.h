#pragma once

/// Something that poll() can wait for and any thread can bring about: readable from set() to
/// clear().
class WakeDescriptor {
 public:
    WakeDescriptor();
    ~WakeDescriptor();
    WakeDescriptor(const WakeDescriptor&) = delete;
    WakeDescriptor& operator=(const WakeDescriptor&) = delete;

    void set();
    void clear();
    bool isSet() const;
    /// -1, which poll() passes over, when the process has no descriptor left.
    int descriptor() const { return descriptor_; }

 private:
    const int descriptor_;
};

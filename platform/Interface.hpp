#pragma once

namespace tessaly {

/// The base of this layer's interfaces. What implements one is held by a reference or a pointer to
/// the interface, may be destroyed through it, and is never copied or moved.
class Interface {
public:
    Interface() = default;
    virtual ~Interface() = default;
    Interface(const Interface &) = delete;
    Interface &operator=(const Interface &) = delete;
};

} // namespace tessaly

#pragma once

#include <cstdint>
#include <random>

#include "Export.h"

// A seeded source of random floats, used by effects that flicker. Seeded
// explicitly so that tests and recorded sessions repeat.
class VUREL_EXPORT RandomObject {
public:
    explicit RandomObject(uint32_t seed = 5489u) : engine_(seed) {}

    // A float in [0, 1).
    float get() { return std::uniform_real_distribution<float>(0.0f, 1.0f)(engine_); }
    void seed(uint32_t s) { engine_.seed(s); }

private:
    std::mt19937 engine_;
};

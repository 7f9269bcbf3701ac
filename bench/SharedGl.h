#pragma once

namespace gui {
class EglContext;
}

namespace vurel_bench {

// The one headless OpenGL context of the program, current, with a target of
// the screen's size; both toolkits draw into it. Made on first use; null
// when EGL gives no OpenGL 3.3 core context.
gui::EglContext* sharedGlContext();
// Destroys it; the renderers drawing into it must be gone.
void releaseSharedGlContext();
// Binds its target, the whole of it as viewport, and clears it.
void clearSharedTarget();
// Waits until the GPU has drawn everything asked of it.
void finishGl();

}  // namespace vurel_bench

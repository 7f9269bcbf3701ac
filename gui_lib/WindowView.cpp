#include "WindowView.h"

#include "Skin/Skin.h"

namespace gui {

WindowView::WindowView(WindowBase& window) : window_(window) { setSkin_(new skin::Skin(this, true)); }

}  // namespace gui

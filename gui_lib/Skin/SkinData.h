#pragma once

#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>

#include "Align.h"
#include "Export.h"
#include "Skin/StateInfo.h"
#include "orm/Allocator.h"
#include "osg/Vec2i.h"
#include "osg/Vec4f.h"

struct lua_State;

namespace gui::skin {

class Skin;

// The look of one kind of widget as data: common parameters plus a two-level
// table of StateInfo entries, keyed by interactive state and then by the
// widget's inner state (1 being the default). A Skin reads it; it holds no
// geometry and draws nothing.
//
// Lookups fall back: a missing inner state to inner state 1, a missing
// interactive state to released, and a part absent from an entry to the
// released entry. So a hover entry may define only its text and keep the
// background of released.
class VUREL_EXPORT Data {
public:
    using InnerStates = std::unordered_map<int, std::shared_ptr<StateInfo>, std::hash<int>, std::equal_to<int>,
                                           orm::allocator<std::pair<int const, std::shared_ptr<StateInfo>>>>;
    using States = std::unordered_map<int, InnerStates, std::hash<int>, std::equal_to<int>,
                                      orm::allocator<std::pair<int const, InnerStates>>>;

    explicit Data(Skin* owner);
    virtual ~Data() = default;
    Data(Data const&) = delete;
    Data& operator=(Data const&) = delete;

    virtual void setOwner(Skin* owner) { owner_ = owner; }
    virtual Skin* getOwner() const { return owner_; }
    virtual void setMinSize(osg::Vec2i const& size);
    virtual osg::Vec2i const& getMinSize() const { return minSize_; }
    virtual void setMaxSize(osg::Vec2i const& size);
    virtual osg::Vec2i const& getMaxSize() const { return maxSize_; }
    virtual void setInsets(Insets const& insets);
    virtual Insets const& getInsets() const { return insets_; }
    virtual void setTextWrapping(bool wrapping);
    virtual bool getTextWrapping() const { return textWrapping_; }
    virtual void setUseEllipsis(bool use);
    virtual bool getUseEllipsis() const { return useEllipsis_; }
    virtual void setTextLineHeight(int height);
    virtual int getTextLineHeight() const { return textLineHeight_; }
    virtual void setFocusRectInsets(Insets const& insets);
    virtual Insets const& getFocusRectInsets() const { return focusRectInsets_; }
    virtual void setFocusRectColor(osg::Vec4f const& color);
    virtual osg::Vec4f const& getFocusRectColor() const { return focusRectColor_; }
    virtual void setClipInsets(Insets const& insets);
    virtual Insets const& getClipInsets() const { return clipInsets_; }
    virtual bool getClipInsetsEmpty() const;
    virtual void setLoaded() { loaded_ = true; }
    virtual bool getLoaded() const { return loaded_; }

    // The part in force for a state, with the fallbacks above; null when none.
    Bkg::Info const* getBkg(InteractiveState interactive, int inner) const;
    Image::Info const* getImage(InteractiveState interactive, int inner) const;
    Text::Info const* getText(InteractiveState interactive, int inner) const;
    // Writes the part of exactly (interactive, inner), creating the entry for
    // a non-null `info`. Null clears the part's flag and keeps the entry.
    void setBkg(Bkg::Info const* info, InteractiveState interactive, int inner);
    void setImage(Image::Info const* info, InteractiveState interactive, int inner);
    void setText(Text::Info const* info, InteractiveState interactive, int inner);
    States const& getStates() const { return states_; }

    // Lua: the load forms read from the skin data table on top of the stack
    // ("params", "states"); loadParamsFromTable reads the params table itself.
    // The unload forms write the same keys into the table on top.
    void loadParams(lua_State* L);
    void loadParamsFromTable(lua_State* L);
    void loadStates(lua_State* L);
    void unloadParams(lua_State* L) const;
    void unloadParamsToTable(lua_State* L) const;
    void unloadStates(lua_State* L) const;

    // Copies the parameters and, for every state present here, its resolved
    // look, so that the target no longer depends on this object.
    void copyTo(Data* target) const;

protected:
    // The Lua key of a state ("released", ...), null for other values.
    static char const* getInteractiveStateName_(int state);

    // With the "states" table on top of the stack.
    virtual void loadState_(lua_State* L, InteractiveState state);
    // Writes `innerStates` under the state's key of the table on top; nil for null.
    virtual void unloadState_(lua_State* L, InteractiveState state, InnerStates const* innerStates) const;
    virtual StateInfo const* findStateInfo_(InteractiveState interactive, int inner) const;
    // With the params table on top of the stack; absent keys keep their values.
    virtual void loadParams_(lua_State* L);
    virtual void unloadParams_(lua_State* L) const;
    // The parameters alone, with no update of the widget.
    virtual void copyParams_(Data* target) const;
    virtual void copyState_(Data* target, InteractiveState interactive, int inner) const;
    virtual void ownerSkinUpdateWidget(bool sizeChanged);

    // The entry of exactly (interactive, inner), created when `create` is set.
    StateInfo* getEntry_(InteractiveState interactive, int inner, bool create);
    // The entry whose part (told by its flag) is in force, or null.
    StateInfo const* findPartOwner_(InteractiveState interactive, int inner, bool StateInfo::*hasPart) const;

    osg::Vec2i minSize_;
    osg::Vec2i maxSize_;
    Insets insets_;
    bool textWrapping_ = false;
    bool useEllipsis_ = false;
    int textLineHeight_ = 0;
    Insets focusRectInsets_{2, 2, 2, 2};
    osg::Vec4f focusRectColor_;
    Insets clipInsets_;
    Skin* owner_;
    States states_;
    bool loaded_ = false;
};

}  // namespace gui::skin

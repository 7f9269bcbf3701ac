#pragma once

#include "Skin/SkinData.h"
#include "Skin/StateInfo.h"

namespace gui::skin {

// A state entry of a check box or radio button: the common parts plus the
// picture of the check mark.
class VUREL_EXPORT CheckBoxStateInfo : public StateInfo {
public:
    // The common keys, then "check"; hasCheck tells whether it gave a value.
    void loadFromLua(lua_State* L) override;
    void saveToLua(lua_State* L) const override;

    bool hasCheck = false;
    Image::Info check;
};

// The look of check boxes and radio buttons: the common data, four size
// parameters for painters that lay the mark out themselves, and state entries
// that may carry a check mark.
class VUREL_EXPORT CheckBoxData : public Data {
public:
    explicit CheckBoxData(Skin* owner);

    virtual void setCheckSize(int size);
    virtual int getCheckSize() const { return checkSize_; }
    virtual void setCheckGap(int gap);
    virtual int getCheckGap() const { return checkGap_; }
    virtual void setPictureSize(int size);
    virtual int getPictureSize() const { return pictureSize_; }
    virtual void setPictureGap(int gap);
    virtual int getPictureGap() const { return pictureGap_; }

    // The check mark in force: that of the state's entry, else, for a state
    // other than released, that of released with the same inner state.
    Image::Info const* getCheck(InteractiveState interactive, int inner) const;
    // Writes the check of exactly (interactive, inner); null clears its flag.
    void setCheck(Image::Info const* info, InteractiveState interactive, int inner);

protected:
    void loadState_(lua_State* L, InteractiveState state) override;
    void unloadState_(lua_State* L, InteractiveState state, InnerStates const* innerStates) const override;
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* target) const override;
    void copyState_(Data* target, InteractiveState interactive, int inner) const override;

    // The entry of exactly (interactive, inner) as a check box entry; a plain
    // entry made by the common setters is replaced by one with its parts.
    CheckBoxStateInfo* getCheckEntry_(InteractiveState interactive, int inner, bool create);
    CheckBoxStateInfo const* findCheckOwner_(InteractiveState interactive, int inner) const;

    int checkSize_ = 16;
    int checkGap_ = 2;
    int pictureSize_ = 0;
    int pictureGap_ = 0;
};

}  // namespace gui::skin

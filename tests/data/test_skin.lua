-- The default skin of the tests. Textures are pictures the tests register by
-- name ("skin/frame" 8x8, "skin/icon" 16x8, "skin/check" 12x12); "fixed" is the
-- fixed-width test font (8 pixels a character, 16 a line). Every value form of
-- the skin format appears at least once.

local FONT = "fixed"

local function cells(edge, center)
    return {
        left_top = edge, center_top = edge, right_top = edge,
        left_center = edge, center_center = center, right_center = edge,
        left_bottom = edge, center_bottom = edge, right_bottom = edge,
    }
end

local function bkg(edge, center, file)
    local b = cells(edge, center)
    if file then
        b.file = file
        b.rect = { x1 = 0, y1 = 0, x2 = 8, y2 = 8 }
        b.insets = { left = 2, top = 2, right = 2, bottom = 2 }
    end
    return b
end

local function text(color, extra)
    local t = {
        font = FONT,
        fontSize = 16,
        color = color,
        horzAlign = { type = "left", offset = 0 },
        vertAlign = { type = "middle", offset = 0 },
    }
    for k, v in pairs(extra or {}) do t[k] = v end
    return t
end

local icon = {
    file = "skin/icon",
    color = "0xffffffff",
    size = { horz = 16, vert = 8 },
    rect = { x1 = 0, y1 = 0, x2 = 16, y2 = 8 },
    userTexSampler = 1,
    resizeToFill = false,
    tileHorizontally = false,
    tileVertically = false,
    horzAlign = { type = "right", offset = -2 },
    vertAlign = { type = "top", offset = 1 },
}

Skin = {}

function Skin.panelSkin()
    return {
        skinData = {
            params = {
                minSize = { horz = 10, vert = 10 },
                maxSize = { horz = 0, vert = 0 },
                insets = { left = 4, top = 3, right = 4, bottom = 3 },
                clipInsets = { left = 1, top = 1, right = 1, bottom = 1 },
                textWrapping = false,
                useEllipsis = true,
                textLineHeight = 0,
                focusRectInsets = { left = 1, top = 1, right = 1, bottom = 1 },
                focusRectColor = "0x000000ff",
            },
            states = {
                released = {
                    [1] = {
                        bkg = bkg("0x808080ff", "0xc0c0c0ff", "skin/frame"),
                        picture = icon,
                        text = text("0x000000ff", {
                            lineHeight = 0,
                            lineThroughHeight = 1,
                            lineThroughOffset = 1,
                            blur = 0,
                            bkgColor = "0x00000000",
                            shadowColor = "0x00000040",
                            blurColor = "0x00000000",
                            lineThroughColor = "0x00000000",
                            shadowOffset = { horz = 1, vert = 1 },
                        }),
                    },
                    [2] = { bkg = bkg("0x204080ff", "0x4080c0ff") },
                },
                -- Only the text changes; the rest comes from released.
                hover = { [1] = { text = text("0xff0000ff") } },
                pressed = { [1] = { bkg = bkg("0x000000ff", "0x202020ff") } },
                disabled = { [1] = { bkg = bkg("0x606060ff", "0x909090ff"), text = text("0x808080ff") } },
            },
        },
    }
end

local function closeButton()
    return {
        skinData = {
            params = { minSize = { horz = 12, vert = 12 } },
            states = {
                released = { [1] = { bkg = bkg("0x400000ff", "0x800000ff") } },
                hover = { [1] = { bkg = bkg("0x600000ff", "0xc00000ff") } },
                pressed = { [1] = { bkg = bkg("0x200000ff", "0x400000ff") } },
            },
        },
    }
end

local function window(color)
    return {
        skinData = {
            params = { minSize = { horz = 60, vert = 40 }, headerHeight = 20 },
            states = { released = { [1] = { bkg = bkg("0x000000ff", color) } } },
        },
        skins = {
            header = {
                skinData = {
                    params = { insets = { left = 4, top = 0, right = 4, bottom = 0 } },
                    states = { released = { [1] = { bkg = bkg("0x000040ff", "0x2040a0ff"), text = text("0xffffffff") } } },
                },
                skins = { closeButton = closeButton() },
            },
            view = {
                skinData = {
                    params = { insets = { left = 2, top = 2, right = 2, bottom = 2 } },
                    states = { released = { [1] = {} } },
                },
            },
        },
    }
end

function Skin.windowSkin() return window("0xe0e0e0ff") end

function Skin.modalWindowSkin() return window("0xf0f0d0ff") end

function Skin.debugSkin()
    -- Edges only: an outline around every widget.
    return { skinData = { states = { released = { [1] = { bkg = bkg("0xff00ffff", "0x00000000") } } } } }
end

function Skin.tooltipSkin()
    return {
        skinData = {
            params = { insets = { left = 3, top = 2, right = 3, bottom = 2 }, textWrapping = true },
            states = { released = { [1] = { bkg = bkg("0x000000ff", "0xffffe0ff"), text = text("0x000000ff") } } },
        },
    }
end

-- Buttons. The text colour tells the look apart: black released, blue hover,
-- white pressed, grey disabled.
local BLACK, BLUE, WHITE, GREY = "0x000000ff", "0x0000ffff", "0xffffffff", "0x808080ff"

local function buttonStates(inner)
    local function entry(edge, center, color)
        local states = {}
        for _, i in ipairs(inner) do
            states[i.key] = { bkg = bkg(edge, i.center or center), text = text(color, { horzAlign = { type = "center", offset = 0 } }) }
        end
        return states
    end
    return {
        released = entry("0x606060ff", "0xa0a0a0ff", BLACK),
        hover = entry("0x707070ff", "0xb0b0b0ff", BLUE),
        pressed = entry("0x303030ff", "0x505050ff", WHITE),
        disabled = entry("0x909090ff", "0xc0c0c0ff", GREY),
    }
end

local function buttonSkin(inner)
    return {
        skinData = {
            params = {
                minSize = { horz = 60, vert = 20 },
                insets = { left = 4, top = 2, right = 4, bottom = 2 },
                focusRectColor = "0x000000ff",
            },
            states = buttonStates(inner),
        },
    }
end

function Skin.buttonSkin() return buttonSkin({ { key = 1 } }) end

-- Off, on and mixed differ in the centre of the background.
local TOGGLE = { { key = 1 }, { key = 2, center = "0x40c040ff" }, { key = 3, center = "0xc0c040ff" } }

function Skin.toggleButtonSkin() return buttonSkin(TOGGLE) end

function Skin.switchButtonSkin() return buttonSkin(TOGGLE) end

local function check(color)
    return {
        file = "skin/check",
        color = color,
        size = { horz = 12, vert = 12 },
        horzAlign = { type = "left", offset = 2 },
        vertAlign = { type = "middle", offset = 0 },
    }
end

-- Check boxes and radio buttons: the label starts right of the mark, which
-- only the on (2) and mixed (3) states show.
local function checkSkin(mixedCheck)
    local function entry(color, mark)
        return { text = text(color, { horzAlign = { type = "left", offset = 18 } }), check = mark }
    end
    return {
        skinData = {
            params = {
                minSize = { horz = 20, vert = 16 },
                insets = { left = 2, top = 2, right = 2, bottom = 2 },
                focusRectColor = "0x000000ff",
                checkSize = 12,
                checkGap = 4,
                pictureSize = 0,
                pictureGap = 0,
            },
            states = {
                released = {
                    [1] = entry(BLACK),
                    [2] = entry(BLACK, check("0x000000ff")),
                    [3] = entry(BLACK, mixedCheck),
                },
                hover = { [1] = entry(BLUE), [2] = entry(BLUE), [3] = entry(BLUE) },
                pressed = { [1] = entry(WHITE), [2] = entry(WHITE), [3] = entry(WHITE) },
            },
        },
    }
end

function Skin.checkBoxSkin() return checkSkin(check("0x00000080")) end

function Skin.radioButtonSkin() return checkSkin(nil) end

-- The default skin of VUREL: a light, flat look with rounded corners, soft
-- shadows and one blue accent. docs/skin-format.md describes the format and
-- this file's layout; copy the folder (this script and textures/) to start a
-- skin of your own.
--
-- Textures are drawn by make_textures.py beside this file. Nine-cell
-- backgrounds name the texture and its corner insets; the numbers below are
-- the ones make_textures.py prints, so change both together. Texture paths
-- are relative to this folder, which the application adds to the texture
-- manager's search paths.

--------------------------------------------------------------------------
-- Fonts and colours

local FONT = "DejaVuSans"              -- fonts-dejavu-core
local FONT_BOLD = "DejaVuSans-Bold"

local INK = "0x1e2430ff"               -- text
local INK_SOFT = "0x4d5869ff"          -- secondary text
local INK_MUTED = "0x6b7686ff"         -- captions
local INK_DISABLED = "0xa3acb9ff"
local WHITE = "0xffffffff"
local ACCENT = "0x2f6febff"
local ACCENT_DARK = "0x1d4fb8ff"
local LINE = "0xdfe3e9ff"
local NONE = "0x00000000"

local SIZE = 13                        -- body text, in UI units
local SIZE_SMALL = 11

--------------------------------------------------------------------------
-- Helpers that build the table forms

-- Nine cells cut from `file` at the given corner insets, drawn as they are.
local function frame(file, left, top, right, bottom)
    return {
        file = "textures/" .. file,
        insets = { left = left, top = top, right = right or left, bottom = bottom or top },
        left_top = WHITE, center_top = WHITE, right_top = WHITE,
        left_center = WHITE, center_center = WHITE, right_center = WHITE,
        left_bottom = WHITE, center_bottom = WHITE, right_bottom = WHITE,
    }
end

-- A flat rectangle of one colour, without a texture.
local function flat(color)
    return {
        left_top = color, center_top = color, right_top = color,
        left_center = color, center_center = color, right_center = color,
        left_bottom = color, center_bottom = color, right_bottom = color,
    }
end

local function text(color, options)
    options = options or {}
    return {
        font = options.bold and FONT_BOLD or FONT,
        fontSize = options.size or SIZE,
        color = color,
        horzAlign = { type = options.align or "left", offset = 0 },
        vertAlign = { type = "middle", offset = options.down or 0 },
        shadowColor = options.shadow,
        shadowOffset = options.shadow and { horz = 0, vert = 1 } or nil,
    }
end

-- A picture of `w` x `h` from `file`, or from the cell `rect` of an atlas.
local function picture(file, w, h, options)
    options = options or {}
    return {
        file = "textures/" .. file,
        color = WHITE,
        size = { horz = w, vert = h },
        rect = options.rect,
        horzAlign = { type = options.align or "center", offset = options.offset or 0 },
        vertAlign = { type = "middle", offset = 0 },
    }
end

-- The cell of a check atlas: columns are the interactive states, rows the
-- inner states (off, on, mixed). Cells are 18 pixels, 20 apart, from (2, 2).
local STATE_COLUMN = { released = 0, hover = 1, pressed = 2, disabled = 3 }
local function atlasCell(state, row)
    local x = 2 + STATE_COLUMN[state] * 20
    local y = 2 + row * 20
    return { x1 = x, y1 = y, x2 = x + 18, y2 = y + 18 }
end

local function insets(left, top, right, bottom)
    return { left = left, top = top, right = right or left, bottom = bottom or top }
end

local function size(w, h)
    return { horz = w, vert = h }
end

-- The focus mark of controls: accent dots just inside the border.
local FOCUS = { focusRectColor = ACCENT, focusRectInsets = insets(4, 4, 4, 5) }

-- `t` with the focus mark settings it does not set itself.
local function params(t)
    for k, v in pairs(FOCUS) do
        if t[k] == nil then t[k] = v end
    end
    return t
end

-- A skin of one state table: states[name][inner] = { bkg, picture, text }.
local function skin(p, states)
    return { skinData = { params = p, states = states } }
end

-- A text-only skin, for labels.
local function label(color, options, extra)
    local p = { insets = insets(0, 2), textWrapping = options and options.wrap or false }
    for k, v in pairs(extra or {}) do p[k] = v end
    return skin(p, {
        released = { [1] = { text = text(color, options) } },
        disabled = { [1] = { text = text(INK_DISABLED, options) } },
    })
end

--------------------------------------------------------------------------
-- Windows

-- Window frames: a shadow margin of 14 at the sides, 10 above and 18 below,
-- then a 36 high white header band with a hairline under it.
local WINDOW_MARGINS = insets(14, 10, 14, 18)
local HEADER_HEIGHT = 36

-- A cross; a soft square comes under it with the pointer.
local function closeButton()
    local cross = picture("close.png", 10, 10)
    return skin({ minSize = size(26, 26), insets = insets(0) }, {
        released = { [1] = { picture = cross } },
        hover = { [1] = { bkg = frame("close_hover.png", 7, 7), picture = cross } },
        pressed = { [1] = { bkg = frame("close_pressed.png", 7, 7), picture = cross } },
    })
end

local function windowSkin(texture)
    return {
        skinData = {
            params = { minSize = size(160, 90), insets = WINDOW_MARGINS, headerHeight = HEADER_HEIGHT },
            states = { released = { [1] = { bkg = frame(texture, 25, 47, 25, 29) } } },
        },
        skins = {
            header = {
                skinData = {
                    params = {
                        insets = insets(16, 0, 44, 1),
                        useEllipsis = true,
                        hasCloseButton = true,
                        closeButtonHorzAlign = { type = "max", offset = -7 },
                        closeButtonVertAlign = { type = "middle", offset = 0 },
                    },
                    states = { released = { [1] = { text = text(INK, { bold = true }) } } },
                },
                skins = { closeButton = closeButton() },
            },
            view = { skinData = { params = { insets = insets(18, 16, 18, 18) }, states = {} } },
        },
    }
end

-- A window without a header: a card with a shadow or a glass panel.
local function plainWindowSkin(bkg, margins, padding)
    return {
        skinData = {
            params = { minSize = size(40, 30), insets = margins, headerHeight = 0 },
            states = { released = { [1] = { bkg = bkg } } },
        },
        skins = {
            header = { skinData = { params = { hasCloseButton = false }, states = {} } },
            view = { skinData = { params = { insets = padding }, states = {} } },
        },
    }
end

--------------------------------------------------------------------------
-- Buttons

local BUTTON_PARAMS = { minSize = size(84, 30), insets = insets(16, 6, 16, 8) }

-- A push button from four textures and two text colours. On a coloured face
-- the focus mark is white.
local function buttonSkin(prefix, ink, disabledTexture, disabledInk)
    local function state(file, color, down)
        return { [1] = { bkg = frame(file, 7, 7, 7, 8), text = text(color, { align = "center", down = down }) } }
    end
    local p = { focusRectColor = ink == WHITE and "0xffffffd9" or nil }
    for k, v in pairs(BUTTON_PARAMS) do p[k] = v end
    return skin(params(p), {
        released = state(prefix .. "_normal.png", ink),
        hover = state(prefix .. "_hover.png", ink),
        pressed = state(prefix .. "_pressed.png", ink, 1),
        disabled = state(disabledTexture, disabledInk),
    })
end

-- Faces of a tri-state toggle for one interactive state: off, on, mixed.
local function toggleFaces(off, on, mixed, offInk, onInk, down)
    local function face(file, color)
        return { bkg = frame(file, 7, 7, 7, 8), text = text(color, { align = "center", down = down }) }
    end
    return { [1] = face(off, offInk), [2] = face(on, onInk), [3] = face(mixed, offInk) }
end

-- Faces of a switch chip for one interactive state: off and on.
local function chipFaces(off, on, offInk, onInk, down)
    local function face(file, color, bold)
        return {
            bkg = frame(file, 14, 14, 14, 15),
            text = text(color, { align = "center", down = down, bold = bold }),
        }
    end
    return { [1] = face(off, offInk), [2] = face(on, onInk, true), [3] = face(off, offInk) }
end

-- Check boxes and radio buttons: the mark is the "check" picture, placed in
-- the left inset; the label follows.
local function checkSkin(atlas, rows)
    local function faces(state, ink)
        local out = {}
        for inner, row in pairs(rows) do
            out[inner] = {
                check = picture(atlas, 18, 18, { rect = atlasCell(state, row), align = "left", offset = -28 }),
                text = text(ink),
            }
        end
        return out
    end
    return skin({
        minSize = size(24, 24),
        insets = insets(28, 3, 4, 3),
        focusRectColor = ACCENT,
        focusRectInsets = insets(4, 1, 0, 1),
    }, {
        released = faces("released", INK),
        hover = faces("hover", INK),
        pressed = faces("pressed", INK),
        disabled = faces("disabled", INK_DISABLED),
    })
end

--------------------------------------------------------------------------
-- The skins by name

Skin = {}

-- Panels draw nothing unless asked: they hold layouts and children.
function Skin.panelSkin()
    return skin({}, { released = { [1] = { text = text(INK) } } })
end

function Skin.windowSkin() return windowSkin("window.png") end

function Skin.modalWindowSkin() return windowSkin("dialog.png") end

function Skin.popupSkin()
    return plainWindowSkin(frame("popup.png", 19, 16, 19, 22), insets(10, 7, 10, 13), insets(6, 6, 6, 6))
end

-- A dark glass panel for overlay windows (heads-up displays).
function Skin.overlaySkin()
    return plainWindowSkin(frame("overlay.png", 13, 13), insets(0), insets(18, 14, 18, 16))
end

-- A light card for notices, also an overlay window.
function Skin.noticeSkin()
    return plainWindowSkin(frame("popup.png", 19, 16, 19, 22), insets(10, 7, 10, 13), insets(14, 12, 16, 12))
end

function Skin.tooltipSkin()
    return {
        skinData = {
            params = {
                insets = insets(13, 8, 13, 11),
                textWrapping = true,
                startTime = 0.6,
                duration = 8,
                offset = size(0, 22),
            },
            states = {
                released = { [1] = { bkg = frame("tooltip.png", 10, 9, 10, 12), text = text(WHITE, { size = 12 }) } },
            },
        },
    }
end

function Skin.buttonSkin() return buttonSkin("button", INK, "button_disabled.png", INK_DISABLED) end

-- The one action a group of buttons leads to.
function Skin.primaryButtonSkin() return buttonSkin("primary", WHITE, "primary_disabled.png", WHITE) end

-- An action that destroys something.
function Skin.dangerButtonSkin() return buttonSkin("danger", WHITE, "button_disabled.png", INK_DISABLED) end

function Skin.toggleButtonSkin()
    return skin(params(BUTTON_PARAMS), {
        released = toggleFaces("button_normal.png", "toggle_on_normal.png", "toggle_mixed.png", INK, ACCENT_DARK),
        hover = toggleFaces("button_hover.png", "toggle_on_hover.png", "toggle_mixed.png", INK, ACCENT_DARK),
        pressed = toggleFaces("button_pressed.png", "toggle_on_pressed.png", "toggle_mixed.png", INK, ACCENT_DARK, 1),
        disabled = toggleFaces("button_disabled.png", "toggle_on_disabled.png", "button_disabled.png",
            INK_DISABLED, INK_DISABLED),
    })
end

-- Switch buttons as pills; the selected one is filled with the accent.
function Skin.switchButtonSkin()
    return skin(params({ minSize = size(64, 30), insets = insets(18, 6, 18, 8) }), {
        released = chipFaces("chip_off.png", "chip_on.png", INK_SOFT, WHITE),
        hover = chipFaces("chip_off_hover.png", "chip_on_hover.png", INK, WHITE),
        pressed = chipFaces("chip_off_pressed.png", "chip_on_pressed.png", INK, WHITE, 1),
        disabled = chipFaces("chip_disabled.png", "chip_on_disabled.png", INK_DISABLED, WHITE),
    })
end

function Skin.checkBoxSkin() return checkSkin("checkbox.png", { [1] = 0, [2] = 1, [3] = 2 }) end

function Skin.radioButtonSkin() return checkSkin("radio.png", { [1] = 0, [2] = 1 }) end

-- Entries of a popup menu: flat until the pointer is on them.
function Skin.menuItemSkin()
    local function item(bkg, color)
        return { [1] = { bkg = bkg, text = text(color) } }
    end
    return skin({ minSize = size(120, 30), insets = insets(12, 5, 12, 5), focusRectColor = ACCENT,
        focusRectInsets = insets(2) }, {
        released = item(nil, INK),
        hover = item(frame("menu_hover.png", 6, 6), ACCENT_DARK),
        pressed = item(frame("menu_pressed.png", 6, 6), ACCENT_DARK),
        disabled = item(nil, INK_DISABLED),
    })
end

-- Labels: text only. Static widgets load "staticSkin"; the gallery names
-- the others in its resources.
function Skin.staticSkin() return label(INK) end
function Skin.labelSkin() return label(INK) end
function Skin.bodySkin() return label(INK_SOFT, { wrap = true }) end
function Skin.captionSkin() return label(INK_MUTED, { size = SIZE_SMALL }) end
function Skin.noteSkin() return label(INK_MUTED, { size = 12, wrap = true }) end
function Skin.sectionSkin() return label(INK, { bold = true }, { insets = insets(0, 0, 0, 2) }) end
-- The term of a list of terms and descriptions: a fixed width lines them up.
function Skin.termSkin() return label(INK, nil, { minSize = size(112, 0) }) end
function Skin.titleSkin() return label(INK, { bold = true, size = 19 }) end
function Skin.statusSkin() return label(INK_SOFT, { size = 12 }) end

-- Labels for the dark overlay.
function Skin.hudCaptionSkin() return label("0xffffff8c", { size = 10, bold = true }) end
function Skin.hudValueSkin() return label(WHITE, { size = 26, bold = true }) end
function Skin.hudBodySkin() return label("0xffffffcc", { size = 12, wrap = true }) end

-- A white card with a hairline border that groups controls.
function Skin.cardSkin()
    return skin({ insets = insets(16, 12, 16, 16) }, { released = { [1] = { bkg = frame("card.png", 9, 9) } } })
end

-- A one-unit hairline between groups.
function Skin.separatorSkin()
    return skin({ minSize = size(1, 1), maxSize = size(0, 1) }, { released = { [1] = { bkg = flat(LINE) } } })
end

-- Pictures: one texture at its own size.
local function pictureSkin(file, w, h)
    return function()
        return skin({}, { released = { [1] = { picture = picture(file, w, h) } } })
    end
end
Skin.logoSkin = pictureSkin("logo.png", 40, 40)
Skin.warningIconSkin = pictureSkin("warning.png", 36, 36)
Skin.infoIconSkin = pictureSkin("info.png", 36, 36)
Skin.successIconSkin = pictureSkin("success.png", 36, 36)

-- Outlines drawn around every widget when debug drawing is on.
function Skin.debugSkin()
    local b = flat("0xff00ffff")
    b.center_center = NONE
    b.insets = insets(1)
    return skin({}, { released = { [1] = { bkg = b } } })
end

--------------------------------------------------------------------------
-- What the gallery draws behind everything (read by the application, not
-- by the toolkit): a picture stretched over the screen and the clear colour.

Desktop = { picture = "textures/desktop.png", color = "0x1f2633ff" }

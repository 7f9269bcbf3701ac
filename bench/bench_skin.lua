-- The skin of the frame benchmarks and of the steady-frame test: every widget
-- kind has a real nine-cell background and real text (DejaVu Sans through
-- the font name "default"), so a frame costs what a shipped skin costs.
--
-- The pictures are registered by the program before the toolkit starts:
-- "bench/frame" (16x16, a rim of 4 pixels) and "bench/check" (12x12).

local FONT = "default"
local SIZE = 13
local FRAME = "bench/frame"

local function cells(edge, center)
    return {
        left_top = edge, center_top = edge, right_top = edge,
        left_center = edge, center_center = center, right_center = edge,
        left_bottom = edge, center_bottom = edge, right_bottom = edge,
    }
end

-- A framed background: the rim of the picture stays four pixels wide.
local function framed(edge, center)
    local b = cells(edge, center)
    b.file = FRAME
    b.insets = { left = 4, top = 4, right = 4, bottom = 4 }
    return b
end

local function text(color, align, offset)
    return {
        font = FONT,
        fontSize = SIZE,
        color = color,
        horzAlign = { type = align or "left", offset = offset or 0 },
        vertAlign = { type = "middle", offset = 0 },
    }
end

local INK = "0x1e2430ff"
local ACCENT = "0x2f6febff"
local WHITE = "0xffffffff"
local GREY = "0x8a93a0ff"

Skin = {}

function Skin.panelSkin()
    return {
        skinData = {
            params = { insets = { left = 4, top = 4, right = 4, bottom = 4 } },
            states = { released = { [1] = { bkg = framed("0xc8ced6ff", "0xeef0f3ff") } } },
        },
    }
end

function Skin.staticSkin()
    return {
        skinData = {
            params = { minSize = { horz = 56, vert = 20 }, insets = { left = 2, top = 0, right = 2, bottom = 0 } },
            states = { released = { [1] = { bkg = cells("0x00000000", "0xf6f7f9ff"), text = text(INK) } } },
        },
    }
end

local function buttonEntry(edge, center, color)
    return { bkg = framed(edge, center), text = text(color, "center") }
end

function Skin.buttonSkin()
    return {
        skinData = {
            params = {
                minSize = { horz = 64, vert = 22 },
                insets = { left = 6, top = 2, right = 6, bottom = 2 },
                focusRectColor = ACCENT,
            },
            states = {
                released = { [1] = buttonEntry("0xa9b3c1ff", "0xf4f6f9ff", INK) },
                hover = { [1] = buttonEntry("0x7f9cc9ff", "0xe3ecfbff", ACCENT) },
                pressed = { [1] = buttonEntry("0x1d4fb8ff", ACCENT, WHITE) },
                disabled = { [1] = buttonEntry("0xd5dae1ff", "0xf1f3f6ff", GREY) },
            },
        },
    }
end

local function mark(color)
    return {
        file = "bench/check",
        color = color,
        size = { horz = 12, vert = 12 },
        horzAlign = { type = "left", offset = 3 },
        vertAlign = { type = "middle", offset = 0 },
    }
end

-- Off (1), on (2) and mixed (3); the label starts right of the mark.
local function checkEntry(edge, color, check)
    return { bkg = framed(edge, "0xffffffff"), text = text(color, "left", 20), check = check }
end

local function checkStates(edge, color)
    return {
        [1] = checkEntry(edge, color),
        [2] = checkEntry(edge, color, mark(ACCENT)),
        [3] = checkEntry(edge, color, mark(GREY)),
    }
end

function Skin.checkBoxSkin()
    return {
        skinData = {
            params = {
                minSize = { horz = 80, vert = 22 },
                insets = { left = 2, top = 2, right = 2, bottom = 2 },
                focusRectColor = ACCENT,
                checkSize = 12,
                checkGap = 4,
            },
            states = {
                released = checkStates("0xc8ced6ff", INK),
                hover = checkStates("0x7f9cc9ff", ACCENT),
                pressed = checkStates("0x1d4fb8ff", ACCENT),
                disabled = checkStates("0xe1e5eaff", GREY),
            },
        },
    }
end

local function closeButton()
    local function entry(center) return { bkg = framed("0x8a93a0ff", center), text = text(INK, "center") } end
    return {
        skinData = {
            params = { minSize = { horz = 14, vert = 14 }, maxSize = { horz = 14, vert = 14 } },
            states = {
                released = { [1] = entry("0xe9ecf0ff") },
                hover = { [1] = entry("0xf3b4b4ff") },
                pressed = { [1] = entry("0xd04a4aff") },
            },
        },
    }
end

function Skin.windowSkin()
    return {
        skinData = {
            params = { minSize = { horz = 80, vert = 60 }, insets = { left = 3, top = 3, right = 3, bottom = 3 }, headerHeight = 22 },
            states = { released = { [1] = { bkg = framed("0x5b6573ff", "0xfafbfcff") } } },
        },
        skins = {
            header = {
                skinData = {
                    params = { insets = { left = 6, top = 0, right = 6, bottom = 0 } },
                    states = { released = { [1] = { bkg = framed("0x1d4fb8ff", ACCENT), text = text(WHITE) } } },
                },
                skins = { closeButton = closeButton() },
            },
            view = {
                skinData = {
                    params = { insets = { left = 4, top = 4, right = 4, bottom = 4 } },
                    states = { released = { [1] = {} } },
                },
            },
        },
    }
end

function Skin.tooltipSkin()
    return {
        skinData = {
            params = { insets = { left = 4, top = 2, right = 4, bottom = 2 }, textWrapping = true },
            states = { released = { [1] = { bkg = framed("0x5b6573ff", "0xffffe8ff"), text = text(INK) } } },
        },
    }
end

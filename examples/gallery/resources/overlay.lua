-- A heads-up display: an overlay window is drawn beneath every other window
-- and never takes the mouse.

local function stat(value, unit)
    return ui.column({ ui.label(value, "hudValueSkin"), ui.label(unit, "hudCaptionSkin") }, { gap = 0 })
end

return {
    kind = "OverlayWindow",
    name = "overlay",
    skin = "overlaySkin",
    position = { horz = 754, vert = 24 },
    size = { horz = 338, vert = 166 },
    layout = { kind = "vert", gap = 8, horzAlign = { type = "stretch" }, vertAlign = { type = "min" } },
    children = {
        ui.label("OVERLAY WINDOW", "hudCaptionSkin"),
        ui.row({ stat("60", "FRAMES / S"), stat("4.2", "MS / FRAME"), stat("118", "WIDGETS") }, { gap = 36 }),
        ui.paragraph("Drawn beneath all other windows, it never takes the mouse: a place for a game's status.",
            302, "hudBodySkin"),
    },
    visible = true,
}

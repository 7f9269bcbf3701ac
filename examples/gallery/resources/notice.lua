-- A notice in the corner: another overlay window, in a light skin, with a
-- picture beside its text.

return {
    kind = "OverlayWindow",
    name = "notice",
    skin = "noticeSkin",
    zOrder = 1,
    position = { horz = 744, vert = 655 },
    size = { horz = 358, vert = 90 },
    layout = { kind = "vert", gap = 0, horzAlign = { type = "stretch" }, vertAlign = { type = "min" } },
    children = {
        ui.row({
            ui.picture("successIconSkin"),
            ui.column({
                ui.label("Settings saved", "sectionSkin"),
                ui.label("Another overlay window, in a light skin.", "captionSkin"),
            }, { gap = 2 }),
        }, { gap = 12 }),
    },
    visible = true,
}

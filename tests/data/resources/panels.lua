-- A window with nested panels, hot keys and callbacks that name functions of this file.
clicks = 0

function onPanelDown(panel, x, y, button)
    clicks = clicks + 1
    vurel.set(panel, "text", "clicked " .. clicks)
end

function onEscape(window)
    vurel.close(window)
end

return {
    kind = "Window",
    name = "main",
    text = "Panels",
    position = { horz = 50, vert = 40 },
    size = { horz = 300, vert = 200 },
    draggable = false,
    hotKeys = { { key = { button = "escape" }, call = "onEscape" } },
    children = {
        {
            kind = "Panel",
            name = "outer",
            drawToTarget = true,
            position = { horz = 10, vert = 10 },
            size = { horz = 200, vert = 100 },
            children = {
                {
                    kind = "Panel",
                    name = "inner",
                    text = "press me",
                    position = { horz = 5, vert = 5 },
                    size = { horz = 50, vert = 30 },
                    mouseCallbacks = { down = "onPanelDown" },
                },
            },
        },
    },
    visible = true,
}

-- A column with a right-aligned row of two panels at its bottom.
return {
    kind = "Window",
    size = { horz = 200, vert = 100 },
    layout = { kind = "vert", gap = 4, horzAlign = { type = "stretch" }, vertAlign = { type = "min" } },
    children = {
        { kind = "Panel", name = "top", size = { horz = 10, vert = 30 } },
        {
            kind = "Panel",
            name = "row",
            size = { horz = 10, vert = 20 },
            layout = { kind = "horz", gap = 6, horzAlign = { type = "max" }, vertAlign = { type = "stretch" } },
            children = {
                { kind = "Panel", name = "ok", size = { horz = 40, vert = 20 } },
                { kind = "Panel", name = "cancel", size = { horz = 50, vert = 20 } },
            },
        },
    },
}

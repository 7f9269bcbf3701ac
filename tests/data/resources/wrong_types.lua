-- Wrong field types are logged and skipped; the window is still built.
return {
    kind = "Window",
    name = 42,
    text = { "not", "text" },
    size = "large",
    position = { horz = 7, vert = 9 },
    enabled = "yes",
    noSuchProperty = 1,
    callbacks = { ["widget change"] = "notAFunction" },
    children = {
        { kind = "Panel", name = "child", size = { horz = "wide", vert = 10 } },
    },
}

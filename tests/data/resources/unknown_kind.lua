return {
    kind = "Window",
    children = {
        { kind = "Panel", name = "fine" },
        { kind = "Gizmo", name = "no such widget" },
    },
}

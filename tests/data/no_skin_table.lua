-- Runs, but defines no "Skin" table.
Colours = { "red" }

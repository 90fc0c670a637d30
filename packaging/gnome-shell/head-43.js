// For GNOME Shell before version 45, which knows no modules.
const { Clutter, Gio, St } = imports.gi;
const Main = imports.ui.main;
const PanelMenu = imports.ui.panelMenu;
const PopupMenu = imports.ui.popupMenu;

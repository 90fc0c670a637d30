// The indicator of GNOME Shell with a shell and a service that are made up: what it shows, and that it is gone when
// it is disabled. Usage: node panels.mjs FOLDER-OF-BOTH-EXTENSIONS
import assert from 'node:assert';
import {readFileSync} from 'node:fs';

const script = readFileSync(`${process.argv[2]}/nimbara-43@nimbara.github.io/extension.js`, 'utf8');
const variant = value => ({recursiveUnpack: () => value});
const record = values => Object.fromEntries(Object.entries(values).map(([key, value]) => [key, variant(value)]));

const answers = {
    Current: [record({name: 'Oslo', summary: '☀ -7° Clear', temperature: '-7°', icon: 'weather-clear', warningCount: 1, warningsText: 'One official warning'})],
    Hours: [Array.from({length: 24}, (_, hour) => record({timeText: `${hour}`, temperature: '-7°', conditionText: 'Clear'}))],
    Warnings: ['warnings', [record({title: 'Yellow: Ice', severity: 'advisory'})]],
};

class Widget {
    constructor(properties = {}) {
        Object.assign(this, properties);
        this.children = [];
    }
    add_child(child) { this.children.push(child); }
    destroy() { this.isGone = true; }
}

const shown = {lines: [], opened: 0, pending: []};
class Button extends Widget {
    menu = {
        removeAll: () => (shown.lines = []),
        addMenuItem: item => item.text && shown.lines.push(item.text),
        addAction: (_, act) => (shown.act = act),
    };
}
let button = null;
let changed = null;
class Proxy {
    constructor(bus, name, path, ready) {
        for (const method of Object.keys(answers))
            this[`${method}Remote`] = (place, take) => shown.pending.push(() => take(answers[method], null));
        this.OpenRemote = () => ++shown.opened;
        this.connectSignal = (_, heard) => (changed = heard);
        this.disconnectSignal = () => (changed = null);
        shown.ready = () => ready(this, null);
    }
}
const settle = () => shown.pending.splice(0).forEach(answer => answer());
const imports = {
    gi: {
        Clutter: {ActorAlign: {CENTER: 2}},
        Gio: {DBus: {session: {}}, DBusProxy: {makeProxyWrapper: () => Proxy}},
        St: {BoxLayout: Widget, Icon: Widget, Label: Widget},
    },
    ui: {
        main: {panel: {addToStatusArea: (_, made) => (button = made)}},
        panelMenu: {Button},
        popupMenu: {PopupMenuItem: class { constructor(text) { this.text = text; } }, PopupSeparatorMenuItem: class {}},
    },
};

const extension = new Function('imports', `${script}\nreturn init();`)(imports);
extension.enable();
const [icon, label, warning] = button.children[0].children;
assert.equal(warning.visible, false);
shown.ready();
settle();
assert.equal(label.text, '-7°');
assert.equal(icon.icon_name, 'weather-clear-symbolic');
assert.equal(warning.visible, true);
assert.deepEqual(shown.lines.slice(0, 3), ['Oslo: ☀ -7° Clear', 'One official warning', 'Yellow: Ice']);
assert.equal(shown.lines.length, 3 + 6);
shown.act();
assert.equal(shown.opened, 1);

answers.Current = [record({name: 'Oslo', warningCount: 0})];
changed();
settle();
assert.equal(label.text, '');
assert.equal(warning.visible, false);

changed();
extension.disable();
assert.equal(button.isGone, true);
assert.equal(changed, null);
settle();

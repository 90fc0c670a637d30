
// One indicator in the top bar, as the service in the session tells it: the temperature, the warnings and the next
// hours of the selected place. Asks at the start and when the service says that something has changed.
const SERVICE = 'io.github.nimbara.Nimbara.Service';
const OBJECT_PATH = '/io/github/nimbara/Nimbara/Service';
const HOURS_SHOWN = 6;

const ServiceProxy = Gio.DBusProxy.makeProxyWrapper(`<node><interface name="${SERVICE}">
<method name="Current"><arg type="s" direction="in"/><arg type="a{sv}" direction="out"/></method>
<method name="Hours"><arg type="s" direction="in"/><arg type="aa{sv}" direction="out"/></method>
<method name="Warnings"><arg type="s" direction="in"/><arg type="s" direction="out"/>
<arg type="aa{sv}" direction="out"/></method>
<method name="Open"><arg type="s" direction="in"/><arg type="s" direction="in"/></method>
<method name="Refresh"><arg type="b" direction="out"/></method>
<signal name="Changed"/></interface></node>`);

// The values of a record without their variants.
function plain(record) {
    return Object.fromEntries(Object.entries(record).map(([key, value]) => [key, value.recursiveUnpack()]));
}

class Weather {
    enable() {
        this._button = new PanelMenu.Button(0.5, 'Nimbara');
        const box = new St.BoxLayout({style_class: 'panel-status-menu-box'});
        this._icon = new St.Icon({icon_name: 'weather-none-available-symbolic', style_class: 'system-status-icon'});
        this._warning = new St.Icon({icon_name: 'dialog-warning-symbolic', style_class: 'system-status-icon', visible: false});
        this._label = new St.Label({text: '', y_align: Clutter.ActorAlign.CENTER});
        box.add_child(this._icon);
        box.add_child(this._label);
        box.add_child(this._warning);
        this._button.add_child(box);
        Main.panel.addToStatusArea('nimbara', this._button);
        this._current = {};
        this._hours = [];
        this._warnings = [];
        this._proxy = new ServiceProxy(Gio.DBus.session, SERVICE, OBJECT_PATH, (proxy, error) => {
            if (error === null && this._button !== null)
                this._look();
        });
        this._changed = this._proxy.connectSignal('Changed', () => this._look());
    }

    disable() {
        this._proxy.disconnectSignal(this._changed);
        this._button.destroy();
        this._button = null;
        this._proxy = null;
    }

    // An answer may come when the extension has been disabled.
    _ask(method, take) {
        this._proxy[method]('', (answer, error) => {
            if (error || this._button === null)
                return;
            take(answer);
            this._show();
        });
    }

    _look() {
        this._ask('CurrentRemote', ([record]) => (this._current = plain(record)));
        this._ask('HoursRemote', ([records]) => (this._hours = records.map(plain)));
        this._ask('WarningsRemote', ([, records]) => (this._warnings = records.map(plain)));
    }

    _show() {
        const now = this._current;
        this._label.text = now.temperature ?? '';
        this._icon.icon_name = `${now.icon ?? 'weather-none-available'}-symbolic`;
        this._warning.visible = (now.warningCount ?? 0) > 0;
        this._button.accessible_name = [now.name, now.summary, now.warningsText].filter(Boolean).join(', ');
        this._showMenu(now);
    }

    _showMenu(now) {
        const menu = this._button.menu;
        menu.removeAll();
        const line = text => menu.addMenuItem(new PopupMenu.PopupMenuItem(text, {reactive: false}));
        line([now.name, now.summary].filter(Boolean).join(': '));
        if (now.warningsText)
            line(now.warningsText);
        this._warnings.forEach(warning => line(warning.title));
        menu.addMenuItem(new PopupMenu.PopupSeparatorMenuItem());
        this._hours.slice(0, HOURS_SHOWN).forEach(hour =>
            line([hour.timeText, hour.temperature, hour.conditionText].filter(Boolean).join('  ')));
        menu.addMenuItem(new PopupMenu.PopupSeparatorMenuItem());
        menu.addAction('Nimbara', () => this._proxy.OpenRemote('', '', () => {}));
    }
}


export default class NimbaraExtension extends Extension {
    enable() {
        this._weather = new Weather();
        this._weather.enable();
    }

    disable() {
        this._weather.disable();
        this._weather = null;
    }
}

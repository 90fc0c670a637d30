
function init() {
    return new Weather();
}

// A dot and a ring that spreads from it once a period; a ring at rest where nothing shall move.
VARYING vec2 corner;
VARYING vec4 tint;
VARYING float phase;

void MAIN() {
    float away = length(corner);
    float spread = moment < 0.0 ? 0.6 : fract(moment + phase);
    float ring = smoothstep(0.14, 0.0, abs(away - 0.16 - 0.8 * spread)) * (1.0 - spread);
    float core = smoothstep(0.26, 0.16, away);
    float share = tint.a * max(core, ring);
    FRAGCOLOR = vec4(tint.rgb * share, share);
}

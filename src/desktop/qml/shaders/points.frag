VARYING vec2 corner;
VARYING vec4 tint;
VARYING float glow;

void MAIN() {
    float away = length(corner);
    float disc = smoothstep(1.0, 0.55, away);
    float halo = smoothstep(0.09, 0.06, away) + 0.5 * pow(max(1.0 - away, 0.0), 4.0);
    float share = tint.a * mix(disc, min(halo, 1.0), glow);
    FRAGCOLOR = vec4(tint.rgb * share, share);
}

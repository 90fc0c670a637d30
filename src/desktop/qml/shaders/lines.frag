VARYING vec4 tint;

void MAIN() {
    FRAGCOLOR = vec4(tint.rgb * tint.a, tint.a);
}

VARYING vec2 corner;
VARYING vec4 tint;
VARYING float phase;

void MAIN() {
    corner = VERTEX.xy / 50.0;
    tint = INSTANCE_COLOR;
    phase = INSTANCE_DATA.x;
    POSITION = INSTANCE_MODELVIEWPROJECTION_MATRIX * vec4(VERTEX, 1.0);
}

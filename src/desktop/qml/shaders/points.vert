// A quad for each instance that always faces the eye and keeps its size in pixels.
VARYING vec2 corner;
VARYING vec4 tint;
VARYING float glow;

void MAIN() {
    corner = VERTEX.xy / 50.0;
    tint = INSTANCE_COLOR;
    glow = INSTANCE_DATA.y;
    vec4 middle = INSTANCE_MODELVIEWPROJECTION_MATRIX * vec4(0.0, 0.0, 0.0, 1.0);
    middle.xy += corner * (INSTANCE_DATA.x + 0.5) * pixel * middle.w;
    POSITION = middle;
}

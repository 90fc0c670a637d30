VARYING vec3 ground;
VARYING vec2 place;

void MAIN() {
    ground = (MODEL_MATRIX * vec4(VERTEX, 1.0)).xyz;
    place = UV0;
    POSITION = MODELVIEWPROJECTION_MATRIX * vec4(VERTEX, 1.0);
}

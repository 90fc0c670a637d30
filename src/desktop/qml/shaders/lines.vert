// A stroke from each instance's place to the place in its data, of a width in pixels.
VARYING vec4 tint;

void MAIN() {
    tint = INSTANCE_COLOR;
    vec4 from = INSTANCE_MODELVIEWPROJECTION_MATRIX * vec4(0.0, 0.0, 0.0, 1.0);
    vec4 to = VIEWPROJECTION_MATRIX * vec4(INSTANCE_DATA.xyz, 1.0);
    vec2 along = to.xy / to.w / pixel - from.xy / from.w / pixel;
    vec2 across = normalize(vec2(-along.y, along.x) + vec2(0.0001, 0.0));
    vec4 end = VERTEX.y > 0.0 ? to : from;
    end.xy += across * sign(VERTEX.x) * 1.1 * pixel * end.w;
    // What reaches behind the eye has no place in the picture.
    POSITION = min(from.w, to.w) > 1.0 ? end : vec4(2.0, 2.0, 2.0, 1.0);
}

// Day, a soft edge, and the night with the lights of cities (the surface's alpha); a haze towards the rim.
VARYING vec3 ground;
VARYING vec2 place;

void MAIN() {
    vec3 up = normalize(ground);
    vec3 toEye = normalize(CAMERA_POSITION - ground);
    vec4 texel = texture(surface, place);
    float height = dot(up, sun);
    float facing = max(dot(up, toEye), 0.0);
    float day = smoothstep(-0.12, 0.16, height);
    vec3 dusk = mix(vec3(1.0), vec3(1.12, 0.92, 0.76), smoothstep(0.3, 0.0, abs(height - 0.04)));
    vec3 color = texel.rgb * dusk * (0.09 + 0.91 * day * (0.72 + 0.28 * max(height, 0.0)));
    color += (1.0 - day) * vec3(0.010, 0.024, 0.052);
    // The sea throws the sun back.
    float sea = smoothstep(0.02, 0.12, texel.b - texel.r);
    vec3 between = normalize(toEye + sun);
    color += sea * day * 0.35 * pow(max(dot(up, between), 0.0), 60.0) * vec3(1.0, 0.95, 0.85);
    color += (1.0 - day) * texel.a * vec3(1.0, 0.8, 0.45);
    float haze = pow(1.0 - facing, 3.0) * (0.08 + 0.55 * day);
    FRAGCOLOR = vec4(mix(color, vec3(0.45, 0.70, 1.0), haze), 1.0);
}

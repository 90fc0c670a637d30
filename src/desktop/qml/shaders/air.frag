// The air around the earth's disc, by how near a line of sight passes; lit where the sun reaches it.
VARYING vec3 shell;

void MAIN() {
    vec3 ray = normalize(shell - CAMERA_POSITION);
    vec3 closest = CAMERA_POSITION - ray * dot(CAMERA_POSITION, ray);
    float above = length(closest) / 100.0 - 1.0;
    float lit = smoothstep(-0.35, 0.35, dot(normalize(closest), sun));
    float glow = exp(-max(above, 0.0) * 34.0) * smoothstep(0.14, 0.10, above) * (0.07 + 0.75 * lit);
    FRAGCOLOR = vec4(vec3(0.42, 0.69, 1.0) * glow, glow);
}

// The buckled shape, to turn: plates coloured by their motion, with the undeformed outline.
"use strict";
(() => {
  const data = JSON.parse(document.getElementById("viewer-data").textContent);
  const scene = document.getElementById("scene");
  const [choice, slider, ghostBox] =
      ["shape", "amplitude", "ghost"].map(id => document.getElementById(id));
  const nodes = data.sections * data.nodes;

  // --- the data: lists along the bridge, one for each node of a section and component (pack.h) ---

  const DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
  const digit = Object.fromEntries([...DIGITS].map((c, i) => [c, i]));

  function unpack(text, scale) {
    const out = new Float32Array(3 * nodes);
    const width = 3 * data.nodes;
    let at = 0, zeros = 0;
    function difference() {
      if (zeros > 0) return zeros--, 0;
      const c = digit[text[at++]];
      if (c < 47) return c - 23;
      if (c < 63) return zeros = c - 46, 0;  // this one and as many more
      let d = 0;
      for (let i = 0; i < 4; i++) d = 64 * d + digit[text[at++]];
      return d - (1 << 23);
    }
    for (let c = 0; c < width; c++)
      for (let j = 0, before = 0, last = 0; j < data.sections; j++) {
        const value = difference() + 2 * last - before;
        before = last;
        last = value;
        out[j * width + c] = value * scale;
      }
    return out;
  }

  const home = unpack(data.xyz, 1 / 10);
  const shapes = data.shapes.map(text => unpack(text, 1 / 127));

  // --- meshes ---

  function triangles() {
    const index = [];
    for (const run of data.runs)
      for (let j = 0; j + 1 < data.sections; j++)
        for (let i = 0; i + 1 < run.length; i++) {
          const a = j * data.nodes + run[i], b = j * data.nodes + run[i + 1];
          const c = a + data.nodes, d = b + data.nodes;
          index.push(a, c, b, b, c, d);
        }
    return index;
  }

  // Edges of the plates along the bridge, and every fifth section.
  function outline() {
    const index = [];
    for (const run of data.runs) {
      for (const n of [run[0], run[run.length - 1]])
        for (let j = 0; j + 1 < data.sections; j++)
          index.push(j * data.nodes + n, (j + 1) * data.nodes + n);
      for (let j = 0; j < data.sections; j += 5)
        for (let i = 0; i + 1 < run.length; i++)
          index.push(j * data.nodes + run[i], j * data.nodes + run[i + 1]);
    }
    return index;
  }

  function geometry(positions, index) {
    const g = new THREE.BufferGeometry();
    g.setAttribute("position", new THREE.BufferAttribute(positions, 3));
    g.setIndex(index);
    return g;
  }

  const plates = geometry(home.slice(), triangles());
  plates.setAttribute("color", new THREE.BufferAttribute(new Float32Array(3 * nodes), 3));
  const ghost = new THREE.LineSegments(geometry(home, outline()),
                                       new THREE.LineBasicMaterial({color: 0x8a939c}));
  const world = new THREE.Scene();
  world.background = new THREE.Color(0xf6f7f8);
  world.add(new THREE.Mesh(plates, new THREE.MeshLambertMaterial(
      {vertexColors: THREE.VertexColors, side: THREE.DoubleSide})));
  world.add(ghost);
  world.add(new THREE.HemisphereLight(0xffffff, 0x99a3ad, 0.75));
  const lamp = new THREE.DirectionalLight(0xffffff, 0.45);
  world.add(lamp);

  // At rest grey, the largest motion of the shape orange.
  function deform() {
    const shape = shapes[choice.selectedIndex];
    const amplitude = slider.value / 100 * data.depth;
    const position = plates.attributes.position.array, color = plates.attributes.color.array;
    for (let n = 0; n < nodes; n++) {
      const [x, y, z] = shape.subarray(3 * n, 3 * n + 3);
      const t = Math.min(1, Math.hypot(x, y, z));
      color.set([0.62 + 0.33 * t, 0.68 - 0.3 * t, 0.74 - 0.64 * t], 3 * n);
      position.set([home[3 * n] + amplitude * x, home[3 * n + 1] + amplitude * y,
                    home[3 * n + 2] + amplitude * z], 3 * n);
    }
    plates.attributes.position.needsUpdate = plates.attributes.color.needsUpdate = true;
    plates.computeVertexNormals();
    ghost.visible = ghostBox.checked;
    draw();
  }

  // --- camera: turns about a point at a distance ---

  const camera = new THREE.PerspectiveCamera(30, 2, 1, 1e6);
  const view = {target: new THREE.Vector3(), turn: 0, rise: 0, distance: 1};
  let renderer = null;

  function draw() {
    if (!renderer) return;
    const {target, turn, rise, distance} = view;
    camera.position.set(Math.sin(turn) * Math.cos(rise), Math.sin(rise),
                        Math.cos(turn) * Math.cos(rise)).multiplyScalar(distance).add(target);
    camera.lookAt(target);
    lamp.position.copy(camera.position);
    renderer.render(world, camera);
  }

  // From the right-hand side of the section nearest to the middle of what is looked at.
  function look(from, to) {
    const box = new THREE.Box3();
    const point = new THREE.Vector3();
    for (let n = from * data.nodes; n < (to + 1) * data.nodes; n++)
      box.expandByPoint(point.fromArray(home, 3 * n));
    box.getCenter(view.target);
    const size = box.getSize(point).length();
    const a = 3 * data.nodes * from, b = 3 * data.nodes * to;
    const along = Math.atan2(home[b] - home[a], home[b + 2] - home[a + 2]);
    view.turn = along - Math.PI / 2 - 0.45 + Math.PI;
    view.rise = 0.45;
    view.distance = 1.15 * size / camera.aspect / Math.tan(Math.PI / 12) + data.depth;
    draw();
  }

  function lookAtBuckle() {
    const at = Math.round(choice.selectedOptions[0].dataset.position / 24);
    look(Math.max(0, at - 10), Math.min(data.sections - 1, at + 10));
  }

  function move(dx, dy) {
    const step = view.distance / scene.clientHeight * 2 * Math.tan(Math.PI / 12);
    const right = new THREE.Vector3().setFromMatrixColumn(camera.matrix, 0);
    const up = new THREE.Vector3().setFromMatrixColumn(camera.matrix, 1);
    view.target.addScaledVector(right, -dx * step).addScaledVector(up, dy * step);
    draw();
  }

  function turn(dx, dy) {
    view.turn -= dx * 0.008;
    view.rise = Math.max(-1.5, Math.min(1.5, view.rise + dy * 0.008));
    draw();
  }

  // --- controls ---

  function listen() {
    scene.addEventListener("pointerdown", e => scene.setPointerCapture(e.pointerId));
    scene.addEventListener("contextmenu", e => e.preventDefault());
    scene.addEventListener("pointermove", e => {
      if (e.buttons) (e.shiftKey || e.buttons !== 1 ? move : turn)(e.movementX, e.movementY);
    });
    scene.addEventListener("wheel", e => {
      e.preventDefault();
      view.distance *= Math.exp(0.001 * e.deltaY);
      draw();
    }, {passive: false});
    scene.addEventListener("keydown", e => {
      const step = {ArrowLeft: [-12, 0], ArrowRight: [12, 0], ArrowUp: [0, -12], ArrowDown: [0, 12]};
      if (!step[e.key]) return;
      e.preventDefault();
      turn(...step[e.key]);
    });
    choice.addEventListener("change", () => (deform(), lookAtBuckle()));
    slider.addEventListener("input", deform);
    ghostBox.addEventListener("change", deform);
    document.getElementById("at-buckle").addEventListener("click", lookAtBuckle);
    document.getElementById("whole").addEventListener("click", () => look(0, data.sections - 1));
    window.addEventListener("resize", fit);
  }

  function fit() {
    if (!scene.clientWidth) return;
    renderer.setSize(scene.clientWidth, scene.clientHeight);
    camera.aspect = scene.clientWidth / scene.clientHeight;
    camera.updateProjectionMatrix();
    draw();
  }

  function supported() {
    const context = document.createElement("canvas").getContext("webgl");
    if (context) context.getExtension("WEBGL_lose_context").loseContext();
    return context !== null;
  }

  if (!supported()) {
    scene.textContent = "This browser draws no WebGL; the picture below shows the shape.";
    return;
  }
  renderer = new THREE.WebGLRenderer({antialias: true, preserveDrawingBuffer: true});
  renderer.setPixelRatio(window.devicePixelRatio);
  scene.append(renderer.domElement);
  listen();
  fit();
  deform();
  lookAtBuckle();
})();

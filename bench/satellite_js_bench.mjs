// Nanoseconds per propagation by satellite.js (its bulk propagator in WebAssembly, one thread) and by
// `nimbara satellites bench`, in turns. Started by satellite_js_bench.sh.

import { execFileSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { BulkPropagator, EciBaseCalculator, createSingleThreadRuntime, twoline2satrec } from 'satellite.js';

const [nimbara, file, time, rounds] = process.argv.slice(2);
const moments = 10_000;

function recordsOf(text) {
  const lines = text.split(/\r?\n/);
  return lines.flatMap((line, i) =>
    line.startsWith('1 ') && lines[i + 1]?.startsWith('2 ') ? [twoline2satrec(line, lines[i + 1])] : []);
}

/// A function that propagates all records at all dates and tells how many states that are.
async function bulk(records, dates) {
  const propagator = new BulkPropagator({
    runtime: await createSingleThreadRuntime(),
    calculators: [new EciBaseCalculator()],
    satRecsCount: records.length,
    datesCount: dates.length,
  });
  propagator.setSatRecs(records);
  propagator.setDates(dates);
  return () => {
    propagator.run();
    return records.length * dates.length;
  };
}

function processorNanoseconds() {
  const { user, system } = process.cpuUsage();
  return (user + system) * 1000;
}

/// Of processor time, like the other program's.
function nanosecondsEach(work) {
  for (let i = 0; i < 3; ++i) work();
  const start = processorNanoseconds();
  let states = 0;
  while (processorNanoseconds() - start < 200_000_000) states += work();
  return (processorNanoseconds() - start) / states;
}

const median = (values) => values.toSorted((a, b) => a - b)[Math.floor(values.length / 2)];

const records = recordsOf(readFileSync(file, 'utf8'));
const first = Date.parse(time);
const shapes = {
  tick: await bulk(records, [new Date(first)]),
  times: await bulk(records.slice(0, 1), Array.from({ length: moments }, (_, i) => new Date(first + 30_000 * i))),
};
const taken = Object.fromEntries(Object.keys(shapes).map((name) => [name, { theirs: [], ours: [], ratios: [] }]));
for (let round = 0; round < Number(rounds); ++round) {
  const answer = execFileSync(nimbara, ['satellites', 'bench', file, time], { encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] });
  for (const [name, work] of Object.entries(shapes)) {
    const ours = Number(answer.split('\n').find((line) => line.startsWith(`nimbara ${name}|`)).split('|')[1]);
    const theirs = nanosecondsEach(work);
    taken[name].theirs.push(theirs);
    taken[name].ours.push(ours);
    taken[name].ratios.push(theirs / ours);
  }
}
console.log(`${records.length} records, ${rounds} rounds; ns per propagation: median (least)`);
for (const [name, { theirs, ours, ratios }] of Object.entries(taken)) {
  const text = (values) => `${median(values).toFixed(1)} (${Math.min(...values).toFixed(1)})`;
  console.log(`${name}: satellite.js ${text(theirs)}, nimbara ${text(ours)}, ratio ${median(ratios).toFixed(1)}`);
}

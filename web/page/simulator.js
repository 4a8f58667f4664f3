// The view of the simulator: scenarios, networks, values that the imitated router is made to show.
import {ask, part} from './api.js';
import {attempt, byId, make, on} from './dom.js';
import {objects} from './values.js';

const wrong = () => byId('simulator').querySelector('.wrong');
const act = (action) => attempt(wrong(), async () => {
  await action();
  await read();
});

function showPlaying(text, playing) {
  byId('playing').replaceChildren(text, playing ? make('button', {onclick: () => act(() => ask('DELETE', '/api/sim/scenarios'))}, 'Stop') : '');
}

const scenarioLine = ({name, summary}) => make('div', {class: 'scenario'},
  make('button', {'data-scenario': name, onclick: () => act(() => ask('POST', `/api/sim/scenarios/${part(name)}`))}, name), make('p', {class: 'soft'}, summary));

function lineOf({name, table, index, what, value, row, code, milliseconds, times}) {
  const often = times === 0 || times === undefined ? '' : `, ${times} times`;
  name ??= table ?? '';
  if (what === 'value') return `${name} shows ${value}`;
  if (what === 'network') return `the ${name} network is ${value}`;
  if (what === 'row') return `${name}: row ${index} ${row}`;
  if (what === 'slow') return `${name} takes ${milliseconds} ms${often}`;
  return `${name} ${what} fails with ${code}${often}`;
}

let heard = {};  // what the last event of a scenario said: what is read knows less

async function read() {
  const sim = await ask('GET', '/api/sim');
  byId('scenarios').replaceChildren(...sim.scenarios.map(scenarioLine));
  byId('simulated').replaceChildren(...sim.simulated.map((one) => make('li', {}, lineOf(one))));
  const playing = sim.playing !== '';
  showPlaying(heard.playing === playing ? heard.text : playing ? `${sim.playing} plays. ` : 'No scenario plays.', playing);
}

export function scenarioStep({name, playing, step, said}) {
  heard = {playing, text: playing ? `${name} plays${step ? `: ${step}` : ''} ` : said ? `${name}: ${said}` : `${name} has ended.`};
  showPlaying(heard.text, playing);
  if (!byId('simulator').hidden) ask('GET', '/api/sim').then((sim) =>
    byId('simulated').replaceChildren(...sim.simulated.map((one) => make('li', {}, lineOf(one)))), () => {});
}

export function startSimulator() {
  byId('names').append(...objects.map((one) => make('option', {value: one.name})));
  for (const button of byId('networks').querySelectorAll('button'))
    on(button, 'click', () => act(() => ask('POST', '/api/sim/events', {name: button.dataset.event})));
  on(byId('clear'), 'click', () => act(() => ask('DELETE', '/api/sim')));
  on(byId('sim-form'), 'submit', () => act(() => ask('PUT', '/api/sim/objects', {[byId('sim-name').value.trim()]: byId('sim-value').value})));
}

export const openSimulator = () => attempt(wrong(), read);

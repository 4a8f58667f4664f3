// The view of values: search by name or meaning, look at one, change it in place.
import {ask, part} from './api.js';
import {attempt, byId, inputFor, make, newId, refresh} from './dom.js';
import {addPlot, isNumber} from './plots.js';

const most = 100;  // shown at once
export let objects = [];
const shown = new Map();  // by name: the elements of those in the list

const matches = (object, words) => words.every((word) =>
  object.name.toLowerCase().includes(word) || (object.meaning ?? '').toLowerCase().includes(word));

const textOf = (object, value) => value === undefined ? '' : object.unit ? `${value} ${object.unit}` : value;

function about(object) {
  const access = object.action ? 'setting it starts something' :
    object.writable ? object.readable ? 'read and write' : 'write only' : 'read only';
  return make('p', {class: 'soft'}, `${object.type}, ${access}. `, object.writable ? `Takes ${object.accepts}.` : '');
}

// The reason alone: the field says which object and value it is about.
const short = (error) => error.problem?.reason && error.problem.right ? `${error.problem.reason}; it takes ${error.problem.right}` : error.message;

async function save(object, input, element) {
  const sent = input.value;
  if (object.secret && sent === '') throw new Error(`Type a value. To erase the secret, run kobctl set ${object.name}=`);
  const mine = ++news;
  const {value} = await ask('PUT', `/api/objects/${part(object.name)}`, {value: sent}).catch((error) => { throw new Error(short(error)); });
  if (input.value === sent) element.start = sent;
  if (!(object.news > mine)) {
    object.value = value;
    object.news = ++news;
    refresh(element.value, textOf(object, value));
  }
  follow(object, element);
}

function form(object, element) {
  const id = newId();
  const wrong = make('p', {class: 'wrong', role: 'alert', id: `${id}-wrong`});
  const done = make('p', {class: 'done', role: 'status'});
  const input = inputFor(object, object.secret ? '' : object.value ?? '', {id, 'aria-describedby': `${id}-wrong`});
  element.input = input;
  element.start = input.value;
  return make('form', {onsubmit: async () => {
    done.textContent = '';
    if (await attempt(wrong, () => save(object, input, element), input)) done.textContent = 'Set.';
  }}, make('label', {for: id}, 'New value'),
  make('div', {class: 'line'}, input, make('button', {class: 'main'}, 'Set')), wrong, done);
}

async function show(object, element) {
  const answer = await ask('GET', `/api/objects/${part(object.name)}?secrets=1`);
  element.value.textContent = textOf(object, answer.value);
}

function inside(object, element) {
  const wrong = make('p', {class: 'wrong', role: 'alert'});
  return make('div', {class: 'inside'}, object.meaning ? make('p', {}, object.meaning) : null, about(object),
    object.writable ? form(object, element) : null,
    make('div', {class: 'line'},
      isNumber(object.value) ? make('button', {onclick: () => { addPlot(object.name); location.hash = 'plots'; }}, 'Plot') : null,
      object.secret && object.readable ? make('button', {onclick: () => attempt(wrong, () => show(object, element))}, 'Show the secret') : null),
    wrong);
}

function entry(object) {
  const element = {value: make('span', {class: 'value'}, textOf(object, object.value)), input: null};
  shown.set(object.name, element);
  const details = make('details', {'data-name': object.name},
    make('summary', {}, make('span', {class: 'name'}, object.name), make('span', {class: 'meaning'}, object.meaning ?? ''), element.value));
  const fill = () => { if (details.children.length === 1) details.append(inside(object, element)); };
  details.firstChild.addEventListener('click', fill);  // before it opens, so that Tab finds the field at once
  details.addEventListener('toggle', fill);            // the browser's own search opens it, too
  return details;
}

// The field of an open form shows the new value, unless somebody types or has typed in it.
function follow(object, element) {
  const {input, start} = element;
  if (!input || object.secret || input === document.activeElement || input.value !== start) return;
  input.value = object.value ?? '';
  element.start = input.value;
}

let news = 0;  // counts what is asked for and what is announced: an answer never replaces what was announced after its question

async function readValues(list) {
  const mine = ++news;
  const query = list.filter((object) => object.readable).map((object) => `match=${part(object.name)}`).join('&');
  if (query === '') return;
  const answer = await ask('GET', `/api/objects?describe=0&${query}`);
  const values = new Map(answer.objects.map((object) => [object.name, object.value]));
  for (const object of list.filter((one) => !(one.news > mine))) {
    const before = object.value;
    object.value = values.get(object.name);
    object.news = mine;
    const element = shown.get(object.name);
    if (element) element.value.textContent = textOf(object, object.value);
    if (element && object.value !== before) follow(object, element);
  }
}

let searches = 0;
let counted = '';  // how many objects the search has found

// Reads the values of those in the list; the reason of a failure stands where the count stands.
async function readShown(list) {
  const mine = searches;
  let said = counted;
  try { await readValues(list); } catch (error) { said = error.message; }
  if (mine === searches) byId('found').textContent = said;
}

async function search() {
  const mine = ++searches;
  const words = byId('search').value.toLowerCase().split(/\s+/).filter((word) => word !== '');
  const found = objects.filter((object) => matches(object, words));
  found.sort((one, other) => words.length === 0 ? 0 : matches({name: other.name}, words) - matches({name: one.name}, words));
  const list = found.slice(0, most);
  shown.clear();
  byId('objects').replaceChildren(...list.map(entry));
  counted = found.length > most ? `${found.length} objects, the first ${most} are shown` :
    found.length === 1 ? '1 object' : `${found.length} objects`;
  byId('found').textContent = counted;
  await readShown(list);
  if (mine === searches) byId('objects').setAttribute('aria-busy', 'false');
}

// Somebody has changed it. Without its value it is read.
export function changed({name, new: value}) {
  const object = objects.find((one) => one.name === name);
  if (object !== undefined && value === undefined && shown.has(name)) readShown([object]);
  if (object === undefined || typeof value !== 'string') return;
  object.value = value;
  object.news = ++news;
  const element = shown.get(name);
  if (element === undefined) return;
  refresh(element.value, textOf(object, value));
  follow(object, element);
}

export async function startValues() {
  objects = (await ask('GET', '/api/objects?values=0')).objects;
  let wait;
  byId('search').addEventListener('input', () => {
    byId('objects').setAttribute('aria-busy', 'true');
    clearTimeout(wait);
    wait = setTimeout(search, 120);
  });
  await search();
}

// Changes may have been missed. What is open or typed stays.
export const readAgain = () => readShown(objects.filter((object) => shown.has(object.name)));

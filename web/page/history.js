// The view of the history: what was changed, and a way back.
import {ask} from './api.js';
import {attempt, byId, make} from './dom.js';

const wrong = () => byId('history').querySelector('.wrong');

async function undo(commits) {
  byId('undone').textContent = '';
  await attempt(wrong(), async () => {
    const {undone} = await ask('POST', '/api/undo', {commits});
    byId('undone').textContent = `As before: ${undone.join(', ')}`;
  });
  await attempt(make('p'), read);
}

function line(change, commits, first) {
  const time = new Date(change.time * 1000);
  return make('tr', {}, make('td', {}, time.toLocaleString([], {hour12: false})), make('td', {}, change.what), make('td', {}, change.old ?? ''), make('td', {}, change.new ?? ''),
    make('td', {}, `${change.program} (${change.process})`),
    make('td', {}, first ? make('button', {onclick: () => undo(commits), 'aria-label': `Undo ${change.what} and what came after it`}, commits === 1 ? 'Undo' : `Undo the last ${commits}`) : ''));
}

async function read() {
  const {changes} = await ask('GET', '/api/history?count=200');
  let commits = 0;
  let commit = null;
  byId('changes').replaceChildren(...(changes ?? []).reverse().map((change) => {
    const first = change.commit !== commit;
    commit = change.commit;
    if (first) ++commits;
    return line(change, commits, first);
  }));
}

export function startHistory() {
  byId('undo').addEventListener('click', () => undo(1));
  byId('again').addEventListener('click', openHistory);
}

export const openHistory = () => attempt(wrong(), read);
